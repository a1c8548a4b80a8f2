// quillmark catalogue changes: which files an update added, found changed or missed, and why those that give
// no face give none.
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "catalogue/catalogue.h"
#include "catalogue/kept_faces.h"
#include "catalogue/prune.h"
#include "catalogue/snapshot.h"
#include "catalogue/spooled_output.h"
#include "output/json_form.h"
#include "reasons/reason.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

// By the paths, whatever happened to the files.
std::string ChangedFilesQuery() {
  return std::string("SELECT CASE WHEN added > ?1 THEN 'added' ELSE 'changed' END, CAST(") + kLabelPrefix +
         R"( || folders.path || name AS BLOB) AS whole, changed,
       (SELECT count(*) FROM faces WHERE file = files.id), reason, listed
FROM files JOIN folders ON folders.id = files.folder JOIN roots ON roots.id = folders.root WHERE changed > ?1
UNION ALL SELECT 'gone', path, run, 0, NULL, NULL FROM gone WHERE run > ?1 ORDER BY whole, 3)";
}

struct Change {
  std::string what, path;
  std::int64_t run = 0, faces = 0;
  Explanation explanation;
};

void WriteText(const Change& change) {
  std::string line = change.what;
  line.append(line.size() < 9 ? 9 - line.size() : 1, ' ');
  line += Printable(change.path);
  const bool is_told = !change.explanation.reason.empty();
  if (is_told) line += ": " + Told(static_cast<std::size_t>(change.faces), change.explanation);
  std::cout << line << '\n';
}

std::string JsonOf(const Change& change) {
  auto object = nlohmann::ordered_json::object();
  object["change"] = change.what;
  object["path"] = change.path;
  object["run"] = change.run;
  object["faces"] = change.faces;
  object["reason"] = nullptr;
  if (!change.explanation.reason.empty()) object["reason"] = change.explanation.reason;
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// All changes after a run.
void WriteChanges(Database& database, std::int64_t since, JsonArray* array) {
  Statement found(database, ChangedFilesQuery().c_str());
  found.With(since);
  while (found.Step() && std::cout) {
    Change change{found.Text(0), found.Text(1), found.Integer(2), found.Integer(3), {}};
    change.explanation.reason = found.Text(4);
    if (!found.IsNull(5)) change.explanation.listed = static_cast<std::uint32_t>(found.Integer(5));
    if (array != nullptr) {
      array->Add(JsonOf(change));
    } else {
      WriteText(change);
    }
  }
}

// False where what went before is forgotten. Who asks for all files asks for none that is gone.
bool IsKnownSince(Database& database, std::int64_t since, const std::string& catalogue) {
  const std::int64_t least = LeastRunToAskFor(database);
  if (since <= 0 || since >= least) return true;
  std::cerr << Printable(catalogue) + ": files that are gone are told since run " + std::to_string(least) +
                   " only\n";
  return false;
}

}  // namespace

int TellChanges(const ChangesQuery& query) {
  std::optional<JsonArray> array;
  if (query.format == "json") array.emplace(std::cout);
  bool is_complete = true;
  {
    SpooledOutput output;
    Database database = OpenSnapshot(query.catalogue);
    const std::int64_t last = database.Number("SELECT coalesce(max(id), 0) FROM runs").value_or(0);
    const std::int64_t since = query.since.value_or(last - 1);
    is_complete = IsKnownSince(database, since, query.catalogue);
    WriteChanges(database, since, array ? &*array : nullptr);
  }
  if (array) array->Finish();
  FlushOutput();
  return is_complete ? 0 : 1;
}

}  // namespace quillmark::tool
