#include "analysis/name_match.h"

namespace quillmark::GFontToolUtils {
namespace {

bool IsAsciiDigitOrLetter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

std::string StripCharsAndNormalizeString(const std::string& name) {
  std::string reduced;
  bool hyphen_seen = false;
  for (const char c : name) {
    if (c == '-') {
      if (hyphen_seen) break;
      hyphen_seen = true;
    } else if (IsAsciiDigitOrLetter(c)) {
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
