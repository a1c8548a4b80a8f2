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

// Prints the texts that were found for a name, or the JSON that holds them.
int Tell(const Query& query, const nlohmann::ordered_json& document, const std::vector<std::string>& texts,
         bool found) {
  if (query.format == "json") {
    WriteJsonDocument(std::cout, document);
  } else {
    for (const std::string& text : texts) std::cout << text << '\n';
  }
  return found ? 0 : 1;
}

int Styles(const Query& query) {
  const std::vector<std::string> styles = StylesOf(query.first, query.second);
  return Tell(query, {{"styles", styles}}, styles, !styles.empty());
}

int Classify(const Query& query) {
  const std::string name = ClassOf(query.first, query.second.empty() ? nullptr : query.second.c_str());
  return Tell(query, {{"class", name}}, {name}, name != "--");
}

void AddQuery(CLI::App& command, const char* first, const char* first_help, const char* second,
              const char* second_help, const FaceNeeds& needs, int (*run)(const Query&), int& status) {
  const auto query = std::make_shared<Query>();
  command.add_option(first, query->first, first_help)->required();
  command.add_option(second, query->second, second_help);
  AddResultForm(command, query->format, "text");
  command.callback([&status, query, needs, run] {
    LoadTables(needs);
    status = run(*query);
  });
}

}  // namespace

void AddStyles(CLI::App& app, int& status) {
  AddQuery(*app.add_subcommand("styles", "Tell the styles that a font's names tell"), "NAME",
           "PostScript name", "SECOND", "Another name of the font", {.styles = true}, Styles, status);
}

void AddClassify(CLI::App& app, int& status) {
  AddQuery(*app.add_subcommand("classify", "Tell the class of a font family"), "FAMILY", "Family name",
           "ALTERNATE", "Name to try when the first has no class", {.classification = true}, Classify,
           status);
}

}  // namespace quillmark::tool
