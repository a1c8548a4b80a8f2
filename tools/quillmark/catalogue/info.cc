// quillmark catalogue info: what a catalogue holds, and how its updates went.
#include <sqlite3.h>

#include <cstdint>
#include <ctime>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/reading_rules.h"
#include "catalogue/schema.h"
#include "catalogue/snapshot.h"
#include "output/json_form.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int64_t kRunsTold = 10;

Json TimeOf(const Statement& row, int column) {
  if (row.IsNull(column)) return nullptr;
  const std::time_t time = row.Integer(column);
  std::tm parts{};
  char text[32];
  if (::gmtime_r(&time, &parts) == nullptr) return nullptr;
  return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts));
}

Json TextOrNull(const Statement& row, int column) {
  return row.IsNull(column) || row.Text(column).empty() ? Json() : Json(row.Text(column));
}

Json Roots(Database& database) {
  Json roots = Json::array();
  Statement found(
      database,
      "SELECT path, label, fault, (SELECT count(*) FROM folders JOIN files ON files.folder = folders.id "
      "WHERE root = roots.id) FROM roots ORDER BY label, position");
  while (found.Step()) {
    roots.push_back({{"path", found.Text(0)},
                     {"label", TextOrNull(found, 1)},
                     {"files", found.Integer(3)},
                     {"fault", TextOrNull(found, 2)}});
  }
  return roots;
}

Json Runs(Database& database) {
  Json runs = Json::array();
  Statement found(
      database,
      "SELECT id, started, ended, added, changed, gone, read, unreadable FROM runs ORDER BY id DESC LIMIT ?");
  found.With(kRunsTold);
  while (found.Step()) {
    runs.push_back({{"run", found.Integer(0)},
                    {"started", TimeOf(found, 1)},
                    {"ended", TimeOf(found, 2)},
                    {"added", found.Integer(3)},
                    {"changed", found.Integer(4)},
                    {"gone", found.Integer(5)},
                    {"read", found.Integer(6)},
                    {"unreadable", found.Integer(7)}});
  }
  return runs;
}

// Files of other machines' catalogues have none.
std::string OldestRules() {
  return "SELECT coalesce(min(rules), " + std::to_string(kReadingRules) + ") FROM files WHERE rules > 0";
}

Json InfoOf(Database& database) {
  const auto number = [&](const char* query) { return database.Number(query).value_or(0); };
  Statement tables(database, "SELECT value FROM meta WHERE name = 'tables'");
  return {{"roots", Roots(database)},
          {"files", number("SELECT count(*) FROM files")},
          {"filesWithFaces", number("SELECT count(DISTINCT file) FROM faces")},
          {"uncertainFiles", number("SELECT count(*) FROM files WHERE uncertain")},
          {"faces", number("SELECT count(*) FROM faces")},
          {"bytes", number("PRAGMA page_count") * number("PRAGMA page_size")},
          {"form", number("PRAGMA user_version")},
          {"readingRules", number(OldestRules().c_str())},
          {"tables", tables.Step() ? TextOrNull(tables, 0) : Json()},
          {"runs", Runs(database)}};
}

std::string Shown(const Json& value) {
  return value.is_string() ? Printable(value.get<std::string>()) : value.dump();
}

void WriteText(const Json& info) {
  for (const Json& root : info["roots"]) {
    std::cout << "root " << Shown(root["path"]);
    if (!root["label"].is_null()) std::cout << " of " << Shown(root["label"]);
    std::cout << ", files: " << root["files"];
    if (!root["fault"].is_null()) std::cout << "; not walked whole: " << Shown(root["fault"]);
    std::cout << '\n';
  }
  std::cout << "faces: " << info["faces"] << "\nfiles: " << info["files"]
            << ", with faces: " << info["filesWithFaces"] << ", to be read again: " << info["uncertainFiles"]
            << "\nbytes: " << info["bytes"] << "\nform: " << info["form"]
            << ", rules of reading: " << info["readingRules"] << "\ntables: " << Shown(info["tables"])
            << '\n';
  for (const Json& run : info["runs"]) {
    std::cout << "run " << run["run"] << ", " << Shown(run["started"]) << ": ";
    if (run["ended"].is_null()) {
      std::cout << "not completed\n";
    } else {
      std::cout << run["added"] << " added, " << run["changed"] << " changed, " << run["gone"] << " gone, "
                << run["read"] << " read, " << run["unreadable"] << " unreadable\n";
    }
  }
}

}  // namespace

int TellCatalogue(const std::string& catalogue, const std::string& format) {
  Database database = OpenSnapshot(catalogue);
  const bool is_complete = TellWhetherComplete(database, catalogue);
  const Json info = InfoOf(database);
  if (format == "json") {
    WriteJsonDocument(std::cout, info);
  } else {
    WriteText(info);
  }
  FlushOutput();
  return is_complete ? 0 : 1;
}

std::string CatalogueSupport() { return std::string("SQLite ") + sqlite3_libversion(); }

}  // namespace quillmark::tool
