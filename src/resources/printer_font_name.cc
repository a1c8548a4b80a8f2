#include "resources/printer_font_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "platform/text/ascii_case.h"
#include "resources/fond_record.h"
#include "support/pascal_string.h"

namespace quillmark {
namespace {

enum StyleBit : unsigned { kBold = 1, kItalic = 2, kOutline = 8, kShadow = 16, kCondense = 32, kExtend = 64 };

// In the style mapping table:
constexpr std::size_t kStyleIndexTable = 10;
constexpr std::size_t kStringCount = 58;
constexpr std::size_t kFirstString = 60;

// A length byte holds no more, whatever the buffer would.
constexpr std::int32_t kLargestPascalString = 256;
constexpr std::size_t kMostStrings = 255;

char PrintableOrMark(char c) { return c >= 0x20 && c <= 0x7E ? c : '?'; }

std::string_view TextOf(const unsigned char* pascal) { return AsText(Bytes(pascal + 1, pascal[0])); }

// A length byte and the text after it; nothing when they are not all there.
std::optional<Bytes> TakePascalString(ByteReader& reader) {
  const auto length = ByteReader(reader).U8();
  return length ? reader.Take(std::size_t{*length} + 1) : std::nullopt;
}

}  // namespace

int GetStyleIndex(unsigned char style) {
  int index = 0;
  if (style & kBold) index += 1;
  if (style & kItalic) index += 2;
  if (style & kOutline) index += 4;
  if (style & kShadow) index += 8;
  if (style & kCondense) {
    index += 16;
  } else if (style & kExtend) {
    index += 32;
  }
  return index;
}

std::int32_t GetIndStyleName(Bytes strings, std::int16_t n, unsigned char* out, std::int32_t limit) {
  ByteReader reader(strings);
  auto string = TakePascalString(reader);
  for (int i = 1; string && i < n; ++i) string = TakePascalString(reader);
  return CopyPascalString(string ? string->data() : nullptr, out, limit);
}

StyleMapping::StyleMapping(Bytes fond, Budget* budget) : budget_(budget) {
  const WorkScope work(budget, Work::kStyleMappings);
  const auto offset = StyleMappingOffset(fond);
  if (!offset || *offset > fond.size() || fond.size() - *offset < kFirstString) return;
  table_ = fond.subspan(*offset);
  ByteReader reader(table_.subspan(kFirstString));
  while (strings_.size() < kMostStrings) {
    const auto string = TakePascalString(reader);
    if (!string) break;  // those that leave the FOND are not among them
    strings_.push_back(*string);
  }
  ChargeRecords(budget, strings_.size());
}

std::optional<Bytes> StyleMapping::String(std::uint8_t n) const {
  const std::size_t index = n == 0 ? 0 : n - 1u;
  if (index >= strings_.size()) return std::nullopt;
  return strings_[index];
}

std::string StyleMapping::GetPrinterFontName(unsigned char style, std::int32_t limit) const {
  const WorkScope work(budget_, Work::kStyleMappings);
  const auto base = String(1);
  if (!base || limit < 1) return {};
  limit = std::min(limit, kLargestPascalString);
  std::array<unsigned char, kLargestPascalString> name;
  CopyPascalString(base->data(), name.data(), limit);

  // The byte is signed: numbers from 128 name no suffix list.
  const auto suffixes = U8At(table_, kStyleIndexTable + static_cast<std::size_t>(GetStyleIndex(style)));
  if (suffixes > 1 && suffixes < 128 && suffixes <= U16At(table_, kStringCount)) {
    const auto list = String(*suffixes);
    for (const std::uint8_t n : list ? list->subspan(1) : Bytes()) {
      if (const auto part = String(n)) AppendPascalString(name.data(), part->data(), limit);
    }
    ChargeRecords(budget_, list ? list->size() : 0);
  }
  std::string text(TextOf(name.data()));
  ChargeBytes(budget_, text.size());
  std::ranges::transform(text, text.begin(), PrintableOrMark);
  return text;
}

void GetPostScriptFontFileName(const unsigned char* psName, unsigned char* out) {
  std::string_view name = TextOf(psName);
  if (name.starts_with("ITC-")) name.remove_prefix(4);
  // The last character is never looked at.
  const auto underscore = name.substr(0, name.empty() ? 0 : name.size() - 1).find('_');
  name = name.substr(0, underscore);

  std::string file_name;
  int to_copy = 0;
  bool after_hyphen = false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool is_last = i + 1 == name.size();
    const bool starts_word = after_hyphen || IsUpperAscii(c) ||
                             (i == 0 && (IsDigitAscii(c) || IsLowerAscii(c))) ||
                             (is_last && IsDigitAscii(c) && i > 0 && IsDigitAscii(name[i - 1]));
    if (starts_word) {
      // Five characters of the first word, three of a later one, a digit alone; but three where the name
      // ends within two characters.
      if (file_name.empty()) {
        to_copy = 4;
      } else {
        to_copy = i + 2 < name.size() && IsDigitAscii(c) ? 0 : 2;
      }
      file_name += c;
      after_hyphen = false;
    } else if (c == '-') {
      after_hyphen = true;
      to_copy = 0;
    } else if (to_copy > 0) {
      file_name += c;
      --to_copy;
    }
  }
  std::ranges::transform(file_name, file_name.begin(), PrintableOrMark);
  if (file_name.size() == 255) file_name.pop_back();
  out[0] = static_cast<unsigned char>(file_name.size());
  std::ranges::copy(file_name, out + 1);
}

}  // namespace quillmark
