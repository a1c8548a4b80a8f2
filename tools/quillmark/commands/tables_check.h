// Loads the library's three tables before a command needs them, and says which are missing.
#ifndef QUILLMARK_TOOL_COMMANDS_TABLES_CHECK_H_
#define QUILLMARK_TOOL_COMMANDS_TABLES_CHECK_H_

#include <string>
#include <vector>

#include "faces/face.h"

namespace quillmark::tool {

// Loads those that `needs` depends on and gives the names of the ones that are missing or cannot be read.
std::vector<std::string> MissingTables(const FaceNeeds& needs);

// The same, reported on standard error. Messages that loading prints to standard output are dropped, since
// the tool's results go there.
void LoadTables(const FaceNeeds& needs);

// The folder that the library reads its tables in; empty when there is none.
std::string TablesFolder();

// Names, sizes and sums of the tables: other texts for other tables.
std::string TablesInUse();

}  // namespace quillmark::tool

#endif
