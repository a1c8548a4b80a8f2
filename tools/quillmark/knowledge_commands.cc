// quillmark styles and quillmark classify: what the knowledge tables say of a name.
#include <iostream>

#include "commands.h"
#include "face.h"

namespace quillmark::tool {

int Styles(const std::string& name, const std::string& second) {
  const std::vector<std::string> styles = StylesOf(name, second);
  for (const std::string& style : styles) std::cout << style << '\n';
  return styles.empty() ? 1 : 0;
}

int Classify(const std::string& family, const std::string& alternate) {
  const std::string name = ClassOf(family, alternate.empty() ? nullptr : alternate.c_str());
  std::cout << name << '\n';
  return name == "--" ? 1 : 0;
}

}  // namespace quillmark::tool
