// quillmark styles and quillmark classify: what the knowledge tables say of a name.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "face.h"
#include "tables_check.h"

namespace quillmark::tool {
namespace {

struct Names {
  std::string first, second;
};

int Styles(const Names& names) {
  LoadTables();
  const std::vector<std::string> styles = StylesOf(names.first, names.second);
  for (const std::string& style : styles) std::cout << style << '\n';
  return styles.empty() ? 1 : 0;
}

int Classify(const Names& names) {
  LoadTables();
  const std::string name = ClassOf(names.first, names.second.empty() ? nullptr : names.second.c_str());
  std::cout << name << '\n';
  return name == "--" ? 1 : 0;
}

}  // namespace

void AddStyles(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("styles", "Tell the styles that a font's names tell");
  const auto names = std::make_shared<Names>();
  command->add_option("name", names->first, "PostScript name")->required();
  command->add_option("second", names->second, "Another name of the font");
  command->callback([&status, names] { status = Styles(*names); });
}

void AddClassify(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("classify", "Tell the class of a font family");
  const auto names = std::make_shared<Names>();
  command->add_option("family", names->first, "Family name")->required();
  command->add_option("alternate", names->second, "Name to try when the first has no class");
  command->callback([&status, names] { status = Classify(*names); });
}

}  // namespace quillmark::tool
