// quillmark styles and quillmark classify: print what the knowledge tables answer for a name.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "faces/face.h"
#include "output/json_form.h"

namespace quillmark::tool {
namespace {

struct Query {
  std::string first, second;  // names
  std::string format;         // text or json
};

int Styles(const Query& query) {
  LoadTables();
  const std::vector<std::string> styles = StylesOf(query.first, query.second);
  if (query.format == "json") {
    WriteJsonDocument(std::cout, {{"styles", styles}});
  } else {
    for (const std::string& style : styles) std::cout << style << '\n';
  }
  return styles.empty() ? 1 : 0;
}

int Classify(const Query& query) {
  LoadTables();
  const std::string name = ClassOf(query.first, query.second.empty() ? nullptr : query.second.c_str());
  if (query.format == "json") {
    WriteJsonDocument(std::cout, {{"class", name}});
  } else {
    std::cout << name << '\n';
  }
  return name == "--" ? 1 : 0;
}

}  // namespace

void AddStyles(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("styles", "Tell the styles that a font's names tell");
  const auto query = std::make_shared<Query>();
  command->add_option("NAME", query->first, "PostScript name")->required();
  command->add_option("SECOND", query->second, "Another name of the font");
  AddResultForm(*command, query->format, "text");
  command->callback([&status, query] { status = Styles(*query); });
}

void AddClassify(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("classify", "Tell the class of a font family");
  const auto query = std::make_shared<Query>();
  command->add_option("FAMILY", query->first, "Family name")->required();
  command->add_option("ALTERNATE", query->second, "Name to try when the first has no class");
  AddResultForm(*command, query->format, "text");
  command->callback([&status, query] { status = Classify(*query); });
}

}  // namespace quillmark::tool
