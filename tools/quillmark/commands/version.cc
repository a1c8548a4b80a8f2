// quillmark version: which tool, which library, and whether the library found its tables.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "catalogue/catalogue.h"
#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "output/json_form.h"
#include "quillmark/quillmark.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

std::string LibraryVersion() {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  QM_GetQuillmarkVersion(&major, &minor);
  return std::to_string(major) + '.' + std::to_string(minor);
}

int PrintVersion(const std::string& format) {
  const std::string folder = TablesFolder();
  const std::vector<std::string> missing = MissingTables(kEveryNeed);
  const std::string database = CatalogueSupport();
  if (format == "json") {
    using Json = nlohmann::ordered_json;
    WriteJsonDocument(std::cout, {{"quillmark", LibraryVersion()},
                                  {"library", LibraryVersion()},
                                  {"tables", folder.empty() ? Json() : Json(folder)},
                                  {"missingTables", missing},
                                  {"catalogue", database.empty() ? Json() : Json(database)}});
  } else {
    std::cout << VersionLine() << "\nlibrary " << LibraryVersion() << "\ntables "
              << (folder.empty() ? "not found" : "in " + Printable(folder)) << '\n';
    for (const std::string& table : missing) std::cout << table << " is missing or cannot be read\n";
    if (missing.empty()) std::cout << "all tables loaded\n";
    std::cout << (database.empty() ? "no catalogue: built without SQLite" : "catalogue with " + database)
              << '\n';
  }
  return missing.empty() ? 0 : 1;
}

}  // namespace

std::string VersionLine() { return "quillmark " + LibraryVersion(); }

void AddVersion(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("version", "Tell the versions, and whether the tables were found");
  const auto format = std::make_shared<std::string>();
  AddResultForm(*command, *format, "text");
  command->callback([&status, format] { status = PrintVersion(*format); });
}

}  // namespace quillmark::tool
