// What a catalogue derives from the knowledge tables: told anew from stored text when the tables are others.
#ifndef QUILLMARK_TOOL_CATALOGUE_DERIVED_H_
#define QUILLMARK_TOOL_CATALOGUE_DERIVED_H_

#include <string>

namespace quillmark::tool {

class Database;

// Does nothing where the catalogue was made with these tables. Files whose stored text depends on the tables,
// too, are marked to be read again.
void DeriveAnewFor(Database& database, const std::string& tables);

}  // namespace quillmark::tool

#endif
