#include "sfnt_faults.h"

#include <algorithm>

#include "analysis/name_record.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"

namespace quillmark::tool {
namespace {

constexpr std::uint32_t kHeaderSize = 12;
constexpr std::uint32_t kEntrySize = 16;

std::string Bytewise(std::uint64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

// There is no entry of the name table among those that count.
std::string WhyNoEntry(const SfntData& font, const std::string& whole) {
  if (font.size() <= kHeaderSize) {
    return whole + " ends before the list of tables, after " + Bytewise(font.size());
  }
  const auto header = font.Range(0, kHeaderSize);
  const std::int16_t count = header ? I16At(*header, 4).value_or(0) : std::int16_t{0};
  if (count == 0) return "its header states 0 tables";
  if (count < 0) {
    return "its header states " + std::to_string(static_cast<std::uint16_t>(count)) +
           " tables, more than a font can have";
  }
  const std::uint32_t fitting = (font.size() - kHeaderSize - 1) / kEntrySize;
  if (fitting < static_cast<std::uint32_t>(count)) {
    return whole + " ends inside the list of tables: " + std::to_string(count) + " are stated, " +
           std::to_string(fitting) + " are there, and no name table is among them";
  }
  return "it has no name table, as fonts cut out of documents often have not";
}

// The table is there, but no record of it holds text.
std::string WhyNoText(const SfntData& font, const TDirectoryEntry& entry,
                      const std::vector<NameRecord>& records) {
  const auto header = font.Range(entry.offset, 6);
  if (!header) return "its name table ends inside its header";
  if (I16At(*header, 2).value_or(0) <= 0) return "its name table lists no names";
  if (records.empty()) return "its name table ends before its first name";
  const bool any_bytes = std::any_of(records.begin(), records.end(),
                                     [](const NameRecord& record) { return !record.text.empty(); });
  return any_bytes ? "no name in its name table is valid text"
                   : "every name in its name table is empty or lies outside the font";
}

}  // namespace

std::optional<std::string_view> SfntKind(Bytes start) {
  using namespace std::string_view_literals;
  if (StartsWith(start, "\0\1\0\0"sv) || StartsWith(start, "true")) return "a TrueType font";
  if (StartsWith(start, "OTTO")) return "an OpenType font";
  if (StartsWith(start, "typ1")) return "a Type 1 font in TrueType's container";
  return std::nullopt;
}

std::optional<std::string> NameFault(const SfntData& font, const std::string& whole) {
  if (getMetaDataFromNamesTable(font, {})) return std::nullopt;
  const auto entry = FindSpecifiedTable(font, "name");
  if (!entry) return WhyNoEntry(font, whole);
  if (entry->offset == 0) return "its name table has the offset 0";
  const std::uint64_t end = std::uint64_t{entry->offset} + entry->length;
  const auto records = ReadNameRecords(font);
  if (!records) {
    return "its name table runs to byte " + std::to_string(end) + ", and " + whole + " has " +
           Bytewise(font.size()) + ": the rest is missing or the font is damaged";
  }
  return WhyNoText(font, *entry, *records);
}

}  // namespace quillmark::tool
