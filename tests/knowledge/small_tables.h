// Small tables that a test writes itself, in place of the shipped ones, and rows of files.
#ifndef QUILLMARK_TESTS_KNOWLEDGE_SMALL_TABLES_H_
#define QUILLMARK_TESTS_KNOWLEDGE_SMALL_TABLES_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "builders/temp_folder.h"

namespace quillmark {

// The library's bundle while it lives.
class TableBundle {
 public:
  TableBundle() { ::setenv("QUILLMARK_BUNDLE", folder_.path().c_str(), 1); }
  ~TableBundle() { ::unsetenv("QUILLMARK_BUNDLE"); }
  void Write(const std::string& file_name, const std::string& list) const {
    folder_.Write("Resources/" + file_name, list);
  }

 private:
  TempFolder folder_;  // not to be copied
};

// The lines of a table beside the tests, behind its header, as four fields.
inline std::vector<std::array<std::string, 4>> RowsOf(const std::string& file_name) {
  std::ifstream lines(QM_TEST_KNOWLEDGE_ROWS "/" + file_name);
  std::vector<std::array<std::string, 4>> rows;
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::istringstream fields(line);
    for (std::string& field : rows.emplace_back()) std::getline(fields, field, '\t');
  }
  EXPECT_FALSE(rows.empty()) << file_name;
  return rows;
}

// Keyword tables from short texts, elements separated by commas: components as "1 Bold B", "5m Extra" (a
// modifier) or "99c" (it compounds), styles as "Bold w 1" (a weight) or "Wide o 3 99".
inline std::string KeywordElements(const std::string& texts, bool styles) {
  std::istringstream in(texts);
  std::string array = "<array>";
  for (std::string text; std::getline(in, text, ',');) {
    std::istringstream parts(text);
    std::string name, kind, item;
    parts >> name;
    if (styles) parts >> kind;
    if (!styles) kind = name.substr(std::min(name.find_first_of("mc"), name.size()));
    if (!styles) name.resize(name.size() - kind.size());
    const auto flag = [&kind](const std::string& key, const char* letter) {
      return "<key>" + key + (kind == letter ? "</key><true/>" : "</key><false/>");
    };
    array += "<dict><key>display</key><string>" + name + "</string>";
    array += styles ? flag("isweight", "w") + "<key>components</key><array>"
                    : "<key>style-constant</key><integer>" + name + "</integer>" + flag("is-modifier", "m") +
                          flag("compounds", "c") + "<key>match-strings</key><array>";
    const std::string tag = styles ? "integer>" : "string>";
    while (parts >> item) array += "<" + tag + item + "</" + tag;
    array += "</array></dict>";
  }
  return array + "</array>";
}

inline std::string KeywordList(const std::string& components, const std::string& styles = "") {
  return "<dict><key>Components</key>" + KeywordElements(components, false) + "<key>Styles</key>" +
         KeywordElements(styles, true) + "</dict>";
}

}  // namespace quillmark

#endif
