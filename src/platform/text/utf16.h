// UTF-16's coding of characters above FFFF as pairs of surrogates.
#ifndef QUILLMARK_PLATFORM_TEXT_UTF16_H_
#define QUILLMARK_PLATFORM_TEXT_UTF16_H_

#include <string>
#include <string_view>

namespace quillmark {

constexpr bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }
constexpr bool IsHighSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t code) { return code >= 0xDC00 && code <= 0xDFFF; }

// The character that begins at the start of `units`, which are not empty; a lone surrogate is itself.
constexpr char32_t FirstCharacter(std::u16string_view units) {
  const bool is_pair = units.size() > 1 && IsHighSurrogate(units[0]) && IsLowSurrogate(units[1]);
  return is_pair ? 0x10000 + (units[0] - 0xD800u) * 0x400 + (units[1] - 0xDC00u) : units[0];
}

// How many units a character takes.
constexpr std::size_t UnitCount(char32_t code) { return code > 0xFFFF ? 2 : 1; }

inline void AppendCharacter(std::u16string& units, char32_t code) {
  if (code > 0xFFFF) {
    units.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    units.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
  } else {
    units.push_back(static_cast<char16_t>(code));
  }
}

}  // namespace quillmark

#endif
