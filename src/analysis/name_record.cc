#include "analysis/name_record.h"

#include <algorithm>

#include "analysis/sfnt_directory.h"
#include "platform/text_encoding.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kHeaderSize = 6;
constexpr std::uint32_t kRecordSize = 12;
constexpr std::int16_t kMaxTextSize = 1023;
constexpr std::int16_t kLanguageJapanese = 11;  // of the Macintosh, but looked for on every platform

// The furthest that a table reaches: the end of as many records as a signed count can say. Text ends well
// before, at 65535 + 32767 + 1023 at most.
constexpr std::uint32_t kLongestReach = kHeaderSize + kRecordSize * 32767;

// Reads the records out of the beginning of a table. False when a record or a text runs past it.
bool ParseRecords(Bytes table, std::vector<NameRecord>& records) {
  records.clear();
  ByteReader reader(table);
  const auto header = reader.Take(kHeaderSize);
  if (!header) return false;
  const std::int16_t count = I16At(*header, 2).value_or(0);
  const std::uint16_t string_offset = U16At(*header, 4).value_or(0);
  bool complete = true;
  bool japanese = false;
  for (int i = 0; i < count; ++i) {
    const auto bytes = reader.Take(kRecordSize);
    if (!bytes) return false;
    const auto field = [&](std::size_t offset) { return I16At(*bytes, offset).value_or(0); };
    japanese = japanese || field(4) == kLanguageJapanese;
    NameRecord record{field(0), field(2), field(4), field(6), japanese, {}};
    // Both are signed: an offset can point before the string storage, and a length of 8000 or more is none.
    const std::int16_t length = std::min(field(8), kMaxTextSize);
    const std::int32_t start = std::int32_t{string_offset} + field(10);
    if (length > 0 && start >= 0) {
      const auto text = Slice(table, static_cast<std::size_t>(start), static_cast<std::size_t>(length));
      complete = complete && text.has_value();
      record.text = text.value_or(Bytes{});
    }
    records.push_back(record);
  }
  return complete;
}

// 16-bit units up to the first zero; an odd last byte does not count.
std::string DecodeUtf16(Bytes text) {
  std::u16string units;
  units.reserve(text.size() / 2);
  ByteReader reader(text);
  while (const auto unit = reader.U16()) {
    if (*unit == 0) break;
    units += static_cast<char16_t>(*unit);
  }
  return Utf16ToUtf8(units).value_or(std::string());
}

}  // namespace

std::optional<std::vector<NameRecord>> ReadNameRecords(const SfntData& font) {
  const auto entry = FindSpecifiedTable(font, "name");
  if (!ValidateDirectoryEntry(entry, font) || entry->offset == 0 || entry->offset >= font.size()) {
    return std::nullopt;
  }
  // Records and texts are bounded by the font, not by the length of their table; a sound table ends within
  // its length, so that one read serves.
  const auto table = [&](std::uint32_t length) {
    const std::uint32_t readable = std::min({length, kLongestReach, font.size() - entry->offset});
    return font.Range(entry->offset, readable).value_or(Bytes{});
  };
  std::vector<NameRecord> records;
  if (!ParseRecords(table(entry->length), records)) {
    static_cast<void>(ParseRecords(table(kLongestReach), records));  // what lies outside the font stays empty
  }
  return records;
}

bool IsDoubleBytePlatform(std::int16_t platform_id, std::int16_t encoding_id, std::int16_t language_id) {
  switch (platform_id) {
    case 0:
      return encoding_id >= 1 && encoding_id <= 4;
    case 1:
      return language_id == kLanguageJapanese;
    case 3:
      return encoding_id >= 1 && encoding_id <= 10;
    default:
      return platform_id == 4;
  }
}

bool HasNameText(const NameRecord& record) {
  if (record.is_japanese ||
      IsDoubleBytePlatform(record.platform_id, record.encoding_id, record.language_id)) {
    return !DecodeNameText(record).empty();
  }
  return U8At(record.text, 0).value_or(0) != 0;
}

std::string DecodeNameText(const NameRecord& record) {
  if (IsDoubleBytePlatform(record.platform_id, record.encoding_id, record.language_id)) {
    return DecodeUtf16(record.text);
  }
  std::string text(AsText(record.text));
  text.resize(std::min(text.find('\0'), text.size()));
  if (record.is_japanese) return ShiftJisToUtf8(text).value_or(std::string());
  // As signed bytes, 80 to FF lie below the blank as well, so what is left is ASCII, the same in Mac Roman.
  // Stored results rely on it.
  for (char& c : text) {
    if (static_cast<signed char>(c) < 0x20) c = '?';
  }
  return text;
}

}  // namespace quillmark
