// Shift-JIS and MacJapanese. The double-byte characters come from the C library's converter, once a process:
// a table of all two-byte codes then serves every string. The single bytes differ from that converter's (5C
// is the backslash here, 7E the tilde) and between the two encodings, so they are stated here.
#include <iconv.h>

#include <array>
#include <cstddef>

#include "platform/text/text_encoding.h"

namespace quillmark {
namespace {

// Indexed by a two-byte code; 0 stands for a code that is no character.
using DoubleByteTable = std::array<char16_t, 0x10000>;

bool IsLeadByte(unsigned byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }

// On a system whose C library has no such converter the table stays empty: single bytes alone are then text.
const DoubleByteTable* MakeDoubleByteTable() {
  auto* table = new DoubleByteTable{};
  const iconv_t converter = iconv_open("UTF-16BE", "SHIFT_JIS");
  // NOLINTNEXTLINE(performance-no-int-to-ptr): how POSIX spells failure
  if (converter == reinterpret_cast<iconv_t>(-1)) return table;
  for (std::size_t code = 0x8100; code < table->size(); ++code) {
    if (!IsLeadByte(static_cast<unsigned>(code / 0x100))) continue;
    std::array<char, 2> in = {static_cast<char>(code / 0x100), static_cast<char>(code % 0x100)};
    std::array<unsigned char, 4> out{};
    char* in_at = in.data();
    char* out_at = reinterpret_cast<char*>(out.data());
    std::size_t in_left = in.size();
    std::size_t out_left = out.size();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);  // a refused code leaves a state behind
    const std::size_t result = iconv(converter, &in_at, &in_left, &out_at, &out_left);
    if (result == 0 && in_left == 0 && out_left == 2) {
      (*table)[code] = static_cast<char16_t>(out[0] * 0x100 + out[1]);
    }
  }
  iconv_close(converter);
  return table;
}

const DoubleByteTable& DoubleBytes() {
  static const DoubleByteTable* const table = MakeDoubleByteTable();
  return *table;
}

// The characters of single bytes; 0 for a byte that is none, such as half of a two-byte code.
using SingleByteTable = std::array<char16_t, 0x100>;

constexpr SingleByteTable kShiftJisSingles = [] {
  SingleByteTable table{};
  for (std::size_t byte = 1; byte < 0x80; ++byte) table[byte] = static_cast<char16_t>(byte);
  for (std::size_t byte = 0xA1; byte <= 0xDF; ++byte) {
    table[byte] = static_cast<char16_t>(0xFF61 + (byte - 0xA1));  // half-width katakana
  }
  return table;
}();

constexpr SingleByteTable kMacJapaneseSingles = [] {
  SingleByteTable table = kShiftJisSingles;
  table[0x5C] = 0x00A5;  // yen sign
  table[0x80] = 0x005C;  // backslash
  table[0xA0] = 0x00A0;  // no-break space
  table[0xFD] = 0x00A9;  // copyright sign
  table[0xFE] = 0x2122;  // trade mark sign
  table[0xFF] = 0x2026;  // ellipsis
  return table;
}();

std::optional<std::u16string> Decode(std::string_view text, const SingleByteTable& singles) {
  std::u16string units;
  units.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned byte = static_cast<unsigned char>(text[i]);
    char16_t unit = singles[byte];
    if (unit == 0 && byte != 0) {
      if (!IsLeadByte(byte) || ++i == text.size()) return std::nullopt;
      unit = DoubleBytes()[byte * 0x100 + static_cast<unsigned char>(text[i])];
      if (unit == 0) return std::nullopt;
    }
    units.push_back(unit);
  }
  return units;
}

std::optional<std::string> ToUtf8(const std::optional<std::u16string>& units) {
  return units ? Utf16ToUtf8(*units) : std::nullopt;
}

}  // namespace

std::optional<std::u16string> ShiftJisToUtf16(std::string_view text) {
  return Decode(text, kShiftJisSingles);
}

std::optional<std::u16string> MacJapaneseToUtf16(std::string_view text) {
  return Decode(text, kMacJapaneseSingles);
}

std::optional<std::string> ShiftJisToUtf8(std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  return ToUtf8(ShiftJisToUtf16(text));
}

std::optional<std::string> MacJapaneseToUtf8(std::string_view text) {
  return ToUtf8(MacJapaneseToUtf16(text));
}

}  // namespace quillmark
