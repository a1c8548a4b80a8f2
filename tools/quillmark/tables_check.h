// Loads the library's three tables before the first command runs, and says which are missing.
#ifndef QUILLMARK_TOOL_TABLES_CHECK_H_
#define QUILLMARK_TOOL_TABLES_CHECK_H_

namespace quillmark::tool {

// Loading may print to standard output, which belongs to the tool's results: it is kept out of it.
void LoadTables();

}  // namespace quillmark::tool

#endif
