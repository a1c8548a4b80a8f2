// A catalogue for those who ask it: one commit, whatever updates do meanwhile, and a line on what it lacks.
#ifndef QUILLMARK_TOOL_CATALOGUE_SNAPSHOT_H_
#define QUILLMARK_TOOL_CATALOGUE_SNAPSHOT_H_

#include <string>

#include "catalogue/database.h"

namespace quillmark::tool {

// All statements of the database see the same commit.
Database OpenSnapshot(const std::string& path);

// Whether every file below the roots was looked at and could be read. Otherwise writes a line on standard
// error that says what is missing from `catalogue`.
bool TellWhetherComplete(Database& database, const std::string& catalogue);

}  // namespace quillmark::tool

#endif
