#include "display_width.h"

#include <cwchar>
#include <vector>

#include "platform/text_encoding.h"

namespace quillmark::tool {
namespace {

const std::string kEllipsis = "\xE2\x80\xA6";
const std::string kReplacement = "\xEF\xBF\xBD";

struct Character {
  std::string bytes;
  std::size_t width = 1;
};

std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

wchar_t CodePoint(const std::string& bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (bytes.size() == 1) return static_cast<wchar_t>(lead);
  unsigned value = lead & (0xFFu >> (bytes.size() + 1));
  for (std::size_t i = 1; i < bytes.size(); ++i)
    value = value * 64 + (static_cast<unsigned char>(bytes[i]) & 0x3Fu);
  return static_cast<wchar_t>(value);
}

// Characters of valid UTF-8, each with its columns. A character the C library knows no width of counts as
// one.
std::vector<Character> Characters(const std::string& text) {
  std::vector<Character> characters;
  for (std::size_t i = 0; i < text.size();) {
    Character c;
    c.bytes = text.substr(i, SequenceLength(static_cast<unsigned char>(text[i])));
    i += c.bytes.size();
    const int width = ::wcwidth(CodePoint(c.bytes));
    c.width = width < 0 ? 1 : static_cast<std::size_t>(width);
    characters.push_back(std::move(c));
  }
  return characters;
}

}  // namespace

std::string Printable(const std::string& text) {
  std::string valid;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view good = ValidUtf8Prefix(rest);
    valid += good;
    rest.remove_prefix(good.size());
    if (rest.empty()) break;
    valid += kReplacement;
    rest.remove_prefix(1);
  }
  std::string shown;
  for (const Character& c : Characters(valid)) {
    const wchar_t code = CodePoint(c.bytes);
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
    shown += control ? kReplacement : c.bytes;
  }
  return shown;
}

std::size_t DisplayWidth(const std::string& text) {
  std::size_t width = 0;
  for (const Character& c : Characters(text)) width += c.width;
  return width;
}

std::string FitEnd(const std::string& text, std::size_t width) {
  if (DisplayWidth(text) <= width || width == 0) return width == 0 ? std::string() : text;
  std::string fitted;
  std::size_t used = 1;
  for (const Character& c : Characters(text)) {
    if (used + c.width > width) break;
    used += c.width;
    fitted += c.bytes;
  }
  return fitted + kEllipsis;
}

std::string FitStart(const std::string& text, std::size_t width) {
  if (DisplayWidth(text) <= width || width == 0) return width == 0 ? std::string() : text;
  const std::vector<Character> characters = Characters(text);
  std::size_t used = 1;
  std::size_t first = characters.size();
  while (first > 0 && used + characters[first - 1].width <= width) used += characters[--first].width;
  std::string fitted = kEllipsis;
  for (std::size_t i = first; i < characters.size(); ++i) fitted += characters[i].bytes;
  return fitted;
}

}  // namespace quillmark::tool
