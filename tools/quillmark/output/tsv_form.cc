#include "output/tsv_form.h"

#include <string_view>

namespace quillmark::tool {

std::string TsvText(const std::string& text) {
  constexpr std::string_view kEscaped = "\t\n\r\\";
  constexpr std::string_view kLetters = "tnr\\";
  std::string escaped;
  for (const char c : text) {
    const std::size_t which = kEscaped.find(c);
    if (which != std::string_view::npos) escaped += '\\';
    escaped += which == std::string_view::npos ? c : kLetters[which];
  }
  return escaped;
}

std::string TsvHeader(const std::vector<const Field*>& fields) {
  std::string line;
  for (const Field* field : fields) line += (line.empty() ? "" : "\t") + std::string(field->name);
  return line + '\n';
}

std::string TsvLine(const Face& face, const std::vector<const Field*>& fields) {
  std::string line;
  for (const Field* field : fields) line += TsvText(FieldText(*field, face)) + '\t';
  line.back() = '\n';
  return line;
}

}  // namespace quillmark::tool
