// How many files may be open at a time. What cannot be opened looks to the library like a file without fonts,
// so no more are read at the same time than can be open. Tests: tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_FILES_OPEN_FILES_H_
#define QUILLMARK_TOOL_FILES_OPEN_FILES_H_

namespace quillmark::tool {

// Raises this process's limit as far as it may and gives how many of the wanted jobs it suffices for. Throws
// when there is not enough for one.
unsigned JobsThatCanOpenFiles(unsigned wanted);

}  // namespace quillmark::tool

#endif
