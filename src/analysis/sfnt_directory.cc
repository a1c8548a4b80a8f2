#include "analysis/sfnt_directory.h"

#include <algorithm>
#include <string_view>

namespace quillmark {
namespace {

constexpr std::uint32_t kHeaderSize = 12;
constexpr std::uint32_t kEntrySize = 16;
constexpr std::uint32_t kTrueTypeVersion = 0x00010000;
constexpr std::uint32_t kOpenTypeVersion = FourCharCode("OTTO");

constexpr const char* kRequiredTables[] = {"cmap", "name", "post", "maxp", "head", "hhea", "hmtx"};
constexpr const char* kOptionalTables[] = {"OS/2", "kern"};
constexpr const char* kKerningTables[] = {"kern", "GPOS", "glyf"};

// The entries of the directory that are looked at.
Bytes DirectoryEntries(const SfntData& font) {
  const std::uint32_t listed = CountTables(font).listed;
  ChargeRecords(font.budget(), listed);
  return font.Range(kHeaderSize, kEntrySize * listed).value_or(Bytes{});
}

TDirectoryEntry ParseEntry(Bytes entry) {
  return {U32At(entry, 0).value_or(0), U32At(entry, 4).value_or(0), U32At(entry, 8).value_or(0),
          U32At(entry, 12).value_or(0)};
}

}  // namespace

SfntTableCount CountTables(const SfntData& font) {
  if (font.size() <= kHeaderSize) return {};
  const auto header = font.Range(0, kHeaderSize);
  const std::int16_t stated = header ? I16At(*header, 4).value_or(0) : std::int16_t{0};
  const std::uint32_t fitting = (font.size() - kHeaderSize - 1) / kEntrySize;
  return {stated, std::min(static_cast<std::uint32_t>(std::max<std::int16_t>(stated, 0)), fitting)};
}

std::optional<TDirectoryEntry> FindSpecifiedTable(const SfntData& font, const char* tag) {
  const std::string_view wanted(tag);
  ByteReader entries(DirectoryEntries(font));
  while (const auto entry = entries.Take(kEntrySize)) {
    if (AsText(*entry).front() != wanted.front()) continue;  // nearly all of them
    // Tags compare as C strings do: up to the first zero byte.
    std::string_view text = AsText(*entry).substr(0, 4);
    text = text.substr(0, text.find('\0'));
    if (text == wanted) return ParseEntry(*entry);
  }
  return std::nullopt;
}

bool HasVariationAxes(const SfntData& font) { return FindSpecifiedTable(font, "fvar").has_value(); }

bool ValidateDirectoryEntry(const std::optional<TDirectoryEntry>& entry, const SfntData& font) {
  return entry && entry->offset + entry->length <= font.size();
}

bool GetPlatformTTF(const SfntData& font, OmString* platform) {
  if (platform == nullptr || font.size() < 5) return false;
  *platform = "mac";
  const auto start = font.Range(0, 4);
  const std::uint32_t version = start ? U32At(*start, 0).value_or(0) : 0;
  if (version != kTrueTypeVersion && version != kOpenTypeVersion) return true;
  const bool complete = std::ranges::all_of(kRequiredTables, [&](const char* tag) {
    return ValidateDirectoryEntry(FindSpecifiedTable(font, tag), font);
  });
  const bool sound = std::ranges::all_of(kOptionalTables, [&](const char* tag) {
    const auto entry = FindSpecifiedTable(font, tag);
    return !entry || ValidateDirectoryEntry(entry, font);
  });
  if (complete && sound) *platform = "crossplatform";
  return true;
}

bool GetTrueTypeKerningTableChecksum(const SfntData& font, std::uint32_t* checksum) {
  std::optional<TDirectoryEntry> entry;
  for (const char* tag : kKerningTables) {
    entry = FindSpecifiedTable(font, tag);
    if (entry) break;
  }
  if (!ValidateDirectoryEntry(entry, font)) return false;
  *checksum = 0;
  if (entry->length % 4 != 0) {
    *checksum = entry->checksum;
  } else if (entry->offset != 0 && std::uint64_t{entry->offset} + entry->length < font.size()) {
    // A table that ends where the font ends leaves 0: stored results rely on it.
    *checksum = font.SumOfWords(entry->offset, entry->length).value_or(0);
  }
  return true;
}

}  // namespace quillmark
