#include "analysis/name_record.h"

#include <algorithm>

#include "analysis/sfnt_directory.h"
#include "platform/text/text_encoding.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kHeaderSize = 6;
constexpr std::uint32_t kRecordSize = 12;
constexpr std::int16_t kMaxTextSize = 1023;
constexpr std::int16_t kLanguageJapanese = 11;  // of the Macintosh, but looked for on every platform

// Largest size that is read: header and 32,767 records. Texts end by 65535 + 32767 + 1023, which is less.
constexpr std::uint32_t kLongestReach = kHeaderSize + kRecordSize * 32767;

// The font from the start of its name table on. Records and texts are bounded by the font, not by the length
// of their table; a sound table ends within its length, so that nothing else is read of most fonts.
class TableBytes {
 public:
  TableBytes(const SfntData& font, const TDirectoryEntry& entry)
      : font_(font), start_(entry.offset), reach_(std::min(kLongestReach, font.size() - entry.offset)) {
    table_ = font_.Range(start_, std::min(entry.length, reach_)).value_or(Bytes{});
  }

  std::optional<Bytes> Part(std::size_t offset, std::size_t length) {
    const auto part = Slice(table_, offset, length);
    return part ? part : PartPastTable(offset, length);
  }
  // The records that lie inside the font, `count` at most.
  Bytes Records(std::size_t count) {
    if (const auto all = Part(kHeaderSize, kRecordSize * count)) return *all;
    return Part(kHeaderSize, std::size_t{(reach_ - kHeaderSize) / kRecordSize} * kRecordSize)
        .value_or(Bytes{});
  }

 private:
  std::optional<Bytes> PartPastTable(std::size_t offset, std::size_t length) {
    // Reads at once all that may be needed later, even when this request itself fails.
    if (!read_whole_) static_cast<void>(font_.Range(start_, reach_));
    read_whole_ = true;
    if (offset > reach_ || length > reach_ - offset) return std::nullopt;
    return font_.Range(start_ + static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length));
  }

  const SfntData& font_;
  std::uint32_t start_;
  std::uint32_t reach_;
  Bytes table_;
  bool read_whole_ = false;
};

// 16-bit units up to the first zero; an odd last byte does not count.
std::string DecodeUtf16(Bytes text) {
  std::u16string units(text.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(text[2 * i] << 8 | text[2 * i + 1]);
  }
  units.resize(std::min(units.find(u'\0'), units.size()));
  return Utf16ToUtf8(units).value_or(std::string());
}

NameFault WhyNoEntry(const SfntData& font) {
  const SfntTableCount tables = CountTables(font);
  if (!tables.stated) return {.kind = NameFault::kNoDirectory, .size = font.size()};
  const auto stated = static_cast<std::uint16_t>(*tables.stated);
  if (stated == 0) return {.kind = NameFault::kNoTables};
  if (*tables.stated < 0) return {.kind = NameFault::kTooManyTables, .stated = stated};
  if (tables.listed < stated) {
    return {.kind = NameFault::kCutDirectory, .stated = stated, .found = tables.listed};
  }
  return {.kind = NameFault::kNoTable};
}

}  // namespace

std::variant<NameRecords, NameFault> ReadNameRecords(const SfntData& font) {
  const auto entry = FindSpecifiedTable(font, "name");
  if (!entry) return WhyNoEntry(font);
  const std::uint64_t end = std::uint64_t{entry->offset} + entry->length;
  if (entry->offset == 0) return NameFault{.kind = NameFault::kOffsetZero};
  if (!ValidateDirectoryEntry(entry, font) || entry->offset >= font.size()) {
    return NameFault{.kind = NameFault::kPastEnd, .end = end, .size = font.size()};
  }
  TableBytes table(font, *entry);
  const auto header = table.Part(0, kHeaderSize);
  if (!header) return NameFault{.kind = NameFault::kCutHeader};
  const auto count = static_cast<std::uint32_t>(std::max<std::int16_t>(I16At(*header, 2).value_or(0), 0));
  if (count == 0) return NameFault{.kind = NameFault::kNoNames};
  const std::uint16_t string_offset = U16At(*header, 4).value_or(0);
  NameRecords records;
  ByteReader reader(table.Records(count));
  bool japanese = false;
  records.reserve(reader.remaining() / kRecordSize);
  while (const auto bytes = reader.Take(kRecordSize)) {
    const auto field = [&](std::size_t offset) { return I16At(*bytes, offset).value_or(0); };
    japanese = japanese || field(4) == kLanguageJapanese;
    NameRecord& record = records.emplace_back();
    record.platform_id = field(0);
    record.encoding_id = field(2);
    record.language_id = field(4);
    record.name_id = field(6);
    record.is_japanese = japanese;
    // Both are signed: an offset can point before the string storage; a length of 0x8000 or more is negative
    // and gives no text.
    const std::int16_t length = std::min(field(8), kMaxTextSize);
    const std::int32_t start = std::int32_t{string_offset} + field(10);
    if (length > 0 && start >= 0) {
      const auto text = table.Part(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
      record.text = text.value_or(Bytes{});
    }
  }
  if (records.empty()) return NameFault{.kind = NameFault::kCutRecords};
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

NameEncoding EncodingOf(const NameRecord& record) {
  if (IsDoubleBytePlatform(record.platform_id, record.encoding_id, record.language_id)) {
    return NameEncoding::kUtf16;
  }
  return record.is_japanese ? NameEncoding::kShiftJis : NameEncoding::kSingleByte;
}

std::string DecodeNameText(const NameRecord& record) {
  const NameEncoding encoding = EncodingOf(record);
  if (encoding == NameEncoding::kUtf16) return DecodeUtf16(record.text);
  std::string text(AsText(record.text));
  text.resize(std::min(text.find('\0'), text.size()));
  if (encoding == NameEncoding::kShiftJis) return ShiftJisToUtf8(text).value_or(std::string());
  // As signed bytes, 0x80 to 0xFF lie below the blank as well, so what is left is ASCII, the same in Mac
  // Roman. Stored results rely on it.
  for (char& c : text) {
    if (static_cast<signed char>(c) < 0x20) c = '?';
  }
  return text;
}

}  // namespace quillmark
