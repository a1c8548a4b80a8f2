// Texts of small keyword tables.
#ifndef QUILLMARK_TESTS_KNOWLEDGE_KEYWORD_LIST_H_
#define QUILLMARK_TESTS_KNOWLEDGE_KEYWORD_LIST_H_

#include <sstream>
#include <string>

namespace quillmark {

inline std::string Elements(const char* tag, const std::string& blank_separated) {
  std::istringstream in(blank_separated);
  std::string text = "<array>";
  for (std::string word; in >> word;) text += "<" + std::string(tag) + ">" + word + "</" + tag + ">";
  return text + "</array>";
}

inline std::string KeywordComponent(int constant, const std::string& words, const char* modifier = "<false/>",
                                    const char* compounds = "<false/>") {
  const std::string number = std::to_string(constant);
  return "<dict><key>display</key><string>D" + number + "</string><key>is-modifier</key>" + modifier +
         "<key>compounds</key>" + compounds + "<key>style-constant</key><integer>" + number +
         "</integer><key>match-strings</key>" + Elements("string", words) + "</dict>";
}

inline std::string KeywordStyle(const char* display, const char* weight, const char* constants) {
  return "<dict><key>display</key><string>" + std::string(display) + "</string><key>isweight</key>" + weight +
         "<key>components</key>" + Elements("integer", constants) + "</dict>";
}

inline std::string KeywordList(const std::string& components, const std::string& styles = "") {
  return "<dict><key>Components</key><array>" + components + "</array><key>Styles</key><array>" + styles +
         "</array></dict>";
}

}  // namespace quillmark

#endif
