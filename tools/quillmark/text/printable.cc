#include "text/printable.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "platform/text/text_encoding.h"

namespace quillmark::tool {
namespace {

struct Range {
  char32_t first, last;
};

// Controls, line and paragraph separators, joiners of hieroglyphs, and what Unicode calls
// Default_Ignorable_Code_Point. Other format characters (category Cf), such as Arabic number signs, are seen.
constexpr Range kHidden[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F},   {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

std::string Formatted(const char* format, unsigned value) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

}  // namespace

bool IsHidden(char32_t code) {
  return std::any_of(std::begin(kHidden), std::end(kHidden),
                     [code](const Range& range) { return code >= range.first && code <= range.last; });
}

std::string Escaped(const Character& character) {
  const char32_t code = character.code;
  if (code == kNoCharacter) return Formatted("\\x%02X", static_cast<unsigned char>(character.bytes[0]));
  if (code == '\t') return "\\t";
  if (code == '\n') return "\\n";
  if (code == '\r') return "\\r";
  constexpr char32_t kFirstOfTwoUnits = 0x10000;
  if (code < kFirstOfTwoUnits) return Formatted("\\u%04X", code);
  const unsigned rest = code - kFirstOfTwoUnits;
  return Formatted("\\u%04X", 0xD800 + rest / 0x400) + Formatted("\\u%04X", 0xDC00 + rest % 0x400);
}

std::string Printable(const std::string& text) {
  const auto is_plain = [](char c) { return c >= ' ' && c <= '~' && c != '\\'; };
  if (std::all_of(text.begin(), text.end(), is_plain)) return text;  // as nearly all are
  std::string shown;
  for (const Character& c : Characters(text)) {
    const bool is_escaped = c.code == kNoCharacter || IsHidden(c.code);
    shown += c.code == '\\' ? "\\\\" : is_escaped ? Escaped(c) : std::string(c.bytes);
  }
  return shown;
}

std::string TypeText(std::uint32_t type) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>((type >> shift) & 0xFFu);
  return Printable(MacRomanToUtf8(bytes));
}

std::string ShownPath(const std::string& path) { return path.empty() ? "\"\"" : Printable(path); }

std::optional<std::string> ShellWord(const std::string& word) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/.,:@%+=-";
  if (word.empty() || word.front() == '-' || Printable(word) != word) return std::nullopt;
  if (word.find('\'') != std::string::npos) return std::nullopt;
  return word.find_first_not_of(kPlain) == std::string::npos ? word : '\'' + word + '\'';
}

std::string WithoutHidden(std::string_view text) {
  std::string safe;
  for (const Character& c : Characters(text)) safe += IsHidden(c.code) ? "_" : c.bytes;
  return safe;
}

}  // namespace quillmark::tool
