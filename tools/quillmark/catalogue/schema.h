// The tables of a catalogue and the numbers by which a file is known as one. docs/catalogue.md documents the
// tables and views for people who open a catalogue with other programs.
#ifndef QUILLMARK_TOOL_CATALOGUE_SCHEMA_H_
#define QUILLMARK_TOOL_CATALOGUE_SCHEMA_H_

#include <cstdint>
#include <string>

namespace quillmark::tool {

class Database;

inline constexpr std::int64_t kApplicationId = 0x516D4361;  // "QmCa"
inline constexpr std::int64_t kSchemaVersion = 2;

// Makes the tables in an empty database.
void CreateSchema(Database& database);

// Adds what catalogues of the same version lack that were made by the first programs of it.
void CompleteSchema(Database& database);

// Throws a DatabaseError unless the file is a catalogue that this program understands: by what SQLite says of
// it, or by its first bytes (database.h).
void CheckSchema(Database& database);
void CheckHeader(const std::string& path, const std::string& header);
// Whether these are the first bytes of a database that is a catalogue, or no program's.
bool MayBeCatalogue(const std::string& header);

}  // namespace quillmark::tool

#endif
