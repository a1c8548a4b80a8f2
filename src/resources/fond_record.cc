#include "resources/fond_record.h"

#include <algorithm>

namespace quillmark {
namespace {

constexpr std::size_t kStyleMappingOffset = 24;
constexpr std::size_t kCountOffset = kFondHeaderSize;
constexpr std::size_t kEntriesOffset = kCountOffset + 2;
constexpr std::size_t kEntrySize = 6;

}  // namespace

std::optional<std::uint32_t> StyleMappingOffset(Bytes record) {
  return record.size() < kFondHeaderSize ? std::nullopt : U32At(record, kStyleMappingOffset);
}

int CountFondEntries(Bytes record) {
  const auto last = I16At(record, kCountOffset);
  if (!last || *last < 0) return 0;
  const std::size_t inside = (record.size() - kEntriesOffset) / kEntrySize;
  return static_cast<int>(std::min(inside, static_cast<std::size_t>(*last) + 1));
}

std::optional<FondEntry> FondEntryAt(Bytes record, int index) {
  if (index < 0 || index >= CountFondEntries(record)) return std::nullopt;
  const std::size_t offset = kEntriesOffset + static_cast<std::size_t>(index) * kEntrySize;
  const auto size = I16At(record, offset);
  const auto style = U16At(record, offset + 2);
  const auto id = I16At(record, offset + 4);
  if (!size || !style || !id) return std::nullopt;
  return FondEntry{*size, *style, *id};
}

FondStyles::FondStyles(Bytes record, Budget* budget) {
  const int count = CountFondEntries(record);
  Charge(budget, static_cast<std::uint64_t>(count) * (Budget::kRecord + Budget::kSortedRecord));
  entries_.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    if (const auto entry = FondEntryAt(record, i)) entries_.push_back(*entry);
  }
  std::ranges::stable_sort(entries_, {}, &FondEntry::style);
  for (const FondEntry& entry : entries_) {
    const auto code = static_cast<std::int16_t>(entry.style);
    if (codes_.empty() || codes_.back() != code) codes_.push_back(code);
  }
}

std::span<const FondEntry> FondStyles::EntriesOf(std::uint16_t style) const {
  const auto begin = std::ranges::lower_bound(entries_, style, {}, &FondEntry::style);
  const auto end = std::ranges::upper_bound(entries_, style, {}, &FondEntry::style);
  return {begin, end};
}

std::optional<std::int16_t> FondStyles::OutlineOf(std::uint16_t style) const {
  const auto entries = EntriesOf(style);
  const auto outline = std::ranges::find(entries, std::int16_t{0}, &FondEntry::size);
  if (outline == entries.end()) return std::nullopt;
  return outline->id;
}

std::optional<std::string> StoredResourceName(Handle resource) {
  Str255 name = {};
  GetResInfo(resource, nullptr, nullptr, name);
  if (ResError() != noErr) return std::nullopt;
  return std::string(AsText(Bytes(name).subspan(1, name[0])));
}

bool IsCidFamilyName(std::string_view stored_name) {
  return stored_name.starts_with("A-CID") || stored_name.ends_with("CID-B");
}

}  // namespace quillmark
