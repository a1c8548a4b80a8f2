// quillmark styles and quillmark classify: what the knowledge tables say of a name.
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

struct Question {
  std::string first, second;  // names
  std::string format;         // text or json
};

int Styles(const Question& question) {
  LoadTables();
  const std::vector<std::string> styles = StylesOf(question.first, question.second);
  if (question.format == "json") {
    WriteJsonDocument(std::cout, {{"styles", styles}});
  } else {
    for (const std::string& style : styles) std::cout << style << '\n';
  }
  return styles.empty() ? 1 : 0;
}

int Classify(const Question& question) {
  LoadTables();
  const std::string name =
      ClassOf(question.first, question.second.empty() ? nullptr : question.second.c_str());
  if (question.format == "json") {
    WriteJsonDocument(std::cout, {{"class", name}});
  } else {
    std::cout << name << '\n';
  }
  return name == "--" ? 1 : 0;
}

}  // namespace

void AddStyles(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("styles", "Tell the styles that a font's names tell");
  const auto question = std::make_shared<Question>();
  command->add_option("name", question->first, "PostScript name")->required();
  command->add_option("second", question->second, "Another name of the font");
  AddResultForm(*command, question->format, "text");
  command->callback([&status, question] { status = Styles(*question); });
}

void AddClassify(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("classify", "Tell the class of a font family");
  const auto question = std::make_shared<Question>();
  command->add_option("family", question->first, "Family name")->required();
  command->add_option("alternate", question->second, "Name to try when the first has no class");
  AddResultForm(*command, question->format, "text");
  command->callback([&status, question] { status = Classify(*question); });
}

}  // namespace quillmark::tool
