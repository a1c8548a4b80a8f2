// What a catalogue forgets at the end of an update or a merge, so that it does not grow by the number of
// these. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_PRUNE_H_
#define QUILLMARK_TOOL_CATALOGUE_PRUNE_H_

#include <cstdint>

namespace quillmark::tool {

class Database;

// Forgets the files that were gone first where more are known than most, then old runs of which no file that
// is gone is known, and, when files were `removed` or changed, makers that no face names. In no transaction.
void Prune(Database& database, bool removed);

// The least run such that all files are known that are gone since.
std::int64_t LeastRunToAskFor(Database& database);

}  // namespace quillmark::tool

#endif
