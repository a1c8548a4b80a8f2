#include "catalogue/prune.h"

#include <string>

#include "catalogue/database.h"

namespace quillmark::tool {
namespace {

constexpr std::int64_t kGoneKept = 100'000;
constexpr std::int64_t kRunsKept = 1'000;
constexpr std::int64_t kMakersToSpare = 1'000;

constexpr const char kLeastRun[] = "gone since";  // in the table meta
constexpr const char kMakersLimit[] = "makers";   // the number of a maker from which on they are pruned

std::int64_t NumberOf(Database& database, const char* name, std::int64_t otherwise) {
  Statement find(database, "SELECT CAST(value AS INTEGER) FROM meta WHERE name = ?");
  return find.With(std::string_view(name)).Step() ? find.Integer(0) : otherwise;
}

void SetNumber(Database& database, const char* name, std::int64_t number) {
  Statement(database, "INSERT OR REPLACE INTO meta (name, value) VALUES (?, ?)")
      .Run(std::string_view(name), std::string_view(std::to_string(number)));
}

// Whole runs, but for the last.
void PruneGone(Database& database) {
  Statement find(database, "SELECT run FROM gone ORDER BY run DESC LIMIT 1 OFFSET ?");
  if (!find.With(kGoneKept).Step()) return;
  const std::int64_t last_forgotten = find.Integer(0) - 1;
  find.Reset();
  Statement(database, "DELETE FROM gone WHERE run <= ?").Run(last_forgotten);
  if (database.Number("SELECT changes()").value_or(0) > 0) SetNumber(database, kLeastRun, last_forgotten);
}

// There is no index by makers: a look at all faces is taken only when there are many new makers.
void PruneMakers(Database& database) {
  const std::int64_t last = database.Number("SELECT max(id) FROM makers").value_or(0);
  if (last < NumberOf(database, kMakersLimit, kMakersToSpare)) return;
  // Nor are faces looked for again at each removal.
  database.Run(
      "PRAGMA foreign_keys = OFF; DELETE FROM makers WHERE id NOT IN (SELECT maker FROM faces); "
      "PRAGMA foreign_keys = ON");
  const std::int64_t kept = database.Number("SELECT count(*) FROM makers").value_or(0);
  SetNumber(database, kMakersLimit,
            database.Number("SELECT coalesce(max(id), 0) FROM makers").value_or(0) + kept + kMakersToSpare);
}

}  // namespace

void Prune(Database& database, bool removed) {
  {
    Transaction transaction(database);
    if (removed) PruneGone(database);
    Statement(database,
              "DELETE FROM runs WHERE id <= (SELECT max(id) FROM runs) - ? AND NOT EXISTS "
              "(SELECT 1 FROM gone WHERE run = runs.id)")
        .Run(kRunsKept);
    transaction.Commit();
  }
  if (removed) PruneMakers(database);
}

std::int64_t LeastRunToAskFor(Database& database) { return NumberOf(database, kLeastRun, 0); }

}  // namespace quillmark::tool
