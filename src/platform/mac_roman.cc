// MacRoman: ASCII below 80, and the 128 characters of Apple's ROMAN.TXT above. The C library's own table
// differs from it at F0, so it is held here.
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/text_encoding.h"

namespace quillmark {
namespace {

// Bytes 80 to FF. DB is the euro sign, F0 the maker's mark in the private use area.
constexpr std::array<char16_t, 128> kUpperHalf = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,
};

constexpr auto kByCharacter = [] {
  std::array<std::pair<char16_t, unsigned char>, 128> entries{};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i] = {kUpperHalf[i], static_cast<unsigned char>(0x80 + i)};
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}();

}  // namespace

std::u16string MacRomanToUtf16(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  std::transform(text.begin(), text.end(), units.begin(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? char16_t{byte} : kUpperHalf[byte - 0x80u];
  });
  return units;
}

std::string MacRomanToUtf8(std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  return Utf16ToUtf8(MacRomanToUtf16(text)).value_or(std::string());  // the table holds no surrogate
}

std::optional<std::string> Utf16ToMacRoman(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  for (const char16_t unit : units) {
    if (unit < 0x80) {
      text.push_back(static_cast<char>(unit));
      continue;
    }
    const auto* entry = std::lower_bound(kByCharacter.begin(), kByCharacter.end(),
                                         std::pair<char16_t, unsigned char>(unit, 0));
    if (entry == kByCharacter.end() || entry->first != unit) return std::nullopt;
    text.push_back(static_cast<char>(entry->second));
  }
  return text;
}

std::optional<std::string> Utf8ToMacRoman(std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  const auto units = Utf8ToUtf16(text);
  return units ? Utf16ToMacRoman(*units) : std::nullopt;
}

}  // namespace quillmark
