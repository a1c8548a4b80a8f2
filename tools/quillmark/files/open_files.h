// How many files may be open at a time. A file that cannot be opened looks to the library like one without
// fonts, so no more files are read at the same time than may be open. Tests: tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_FILES_OPEN_FILES_H_
#define QUILLMARK_TOOL_FILES_OPEN_FILES_H_

namespace quillmark::tool {

// Raises this process's limit as far as allowed and returns how many of the wanted jobs can run within it.
// Throws when it is too low for one.
unsigned JobsThatCanOpenFiles(unsigned wanted);

}  // namespace quillmark::tool

#endif
