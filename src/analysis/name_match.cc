#include "analysis/name_match.h"

#include "platform/text/ascii_case.h"

namespace quillmark::GFontToolUtils {

std::string StripCharsAndNormalizeString(const std::string& name) {
  std::string reduced;
  bool hyphen_seen = false;
  for (const char c : name) {
    if (c == '-') {
      if (hyphen_seen) break;
      hyphen_seen = true;
    } else if (IsDigitAscii(c) || IsUpperAscii(c) || IsLowerAscii(c)) {
      reduced += c;
    }
  }
  return reduced;
}

bool DoPostScriptNamesMatch(const std::string& a, const std::string& b, bool exactOnly) {
  if (a == b) return true;
  return !exactOnly && StripCharsAndNormalizeString(a) == StripCharsAndNormalizeString(b);
}

}  // namespace quillmark::GFontToolUtils
