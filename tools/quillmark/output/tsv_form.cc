#include "output/tsv_form.h"

namespace quillmark::tool {

std::string TsvText(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '\t':
        escaped += "\\t";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\\':
        escaped += "\\\\";
        break;
      default:
        escaped += c;
    }
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
