// UTF-8 and UTF-16: checks and conversions. Well-formed UTF-8 is that of the Unicode Standard's table of byte
// sequences: the lead byte says how many bytes follow and which values the first of them may have.
#include "platform/text/text_encoding.h"

#include <cstddef>

#include "platform/text/utf16.h"

namespace quillmark {
namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;

struct Decoded {
  char32_t code = 0;
  std::size_t length = 0;  // 0: no valid sequence
};

// The sequence at `at`, which lies inside `text`.
Decoded DecodeUtf8At(std::string_view text, std::size_t at) {
  const auto byte = [text, at](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xC2 || lead > 0xF4) return {};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (length > text.size() - at) return {};
  // The second byte shows overlong forms, surrogates and values above 0x10FFFF.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) return {};
  char32_t code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0u) != 0x80) return {};
    code = code * 64 + (byte(i) & 0x3Fu);
  }
  return {code, length};
}

// How many bytes or units at the start of `text` are ASCII.
template <typename Char>
std::size_t AsciiLength(std::basic_string_view<Char> text) {
  std::size_t length = 0;
  while (length < text.size() && (text[length] & ~0x7F) == 0) ++length;
  return length;
}

}  // namespace

bool IsAscii(std::string_view text) { return AsciiLength(text) == text.size(); }

std::string_view ValidUtf8Prefix(std::string_view text) {
  std::size_t at = AsciiLength(text);
  while (at < text.size()) {
    const std::size_t length = DecodeUtf8At(text, at).length;
    if (length == 0) break;
    at += length;
  }
  return text.substr(0, at);
}

bool IsValidUtf8(std::string_view text) { return ValidUtf8Prefix(text).size() == text.size(); }

std::optional<std::u16string> Utf8ToUtf16(std::string_view text) {
  std::size_t at = AsciiLength(text);
  const std::string_view ascii = text.substr(0, at);
  std::u16string units(ascii.begin(), ascii.end());
  units.reserve(text.size());
  while (at < text.size()) {
    const auto [code, length] = DecodeUtf8At(text, at);
    if (length == 0) return std::nullopt;
    if (at != 0 || code != kByteOrderMark) AppendCharacter(units, code);
    at += length;
  }
  return units;
}

std::optional<std::string> Utf16ToUtf8(std::u16string_view units) {
  const std::u16string_view ascii = units.substr(0, AsciiLength(units));
  std::string text(ascii.begin(), ascii.end());
  text.reserve(units.size() + units.size() / 2);
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  const auto append_continuation = [&append](char32_t bits) { append(0x80 | (bits & 0x3F)); };
  for (std::size_t i = text.size(); i < units.size();) {
    const char32_t code = FirstCharacter(units.substr(i));
    if (IsSurrogate(code)) return std::nullopt;
    i += UnitCount(code);
    if (code < 0x80) {
      append(code);
    } else if (code < 0x800) {
      append(0xC0 | (code >> 6));
      append_continuation(code);
    } else if (code < 0x10000) {
      append(0xE0 | (code >> 12));
      append_continuation(code >> 6);
      append_continuation(code);
    } else {
      append(0xF0 | (code >> 18));
      append_continuation(code >> 12);
      append_continuation(code >> 6);
      append_continuation(code);
    }
  }
  return text;
}

}  // namespace quillmark
