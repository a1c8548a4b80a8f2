// Answers from the association table of a FOND. Its names are in fond_names.cc.
#include "resources/family.h"

#include <utility>

#include "resources/quillmark_resource_file.h"

namespace quillmark {
namespace {

constexpr std::size_t kFamilyIdOffset = 2;
constexpr std::size_t kInternationalInfoOffset = 48;  // the second of two words
constexpr std::int16_t kFirstDoubleByteFamily = 16384;
constexpr std::int16_t kEndOfDoubleByteFamilies = 16896;

// 16 bits of a style code, however it was widened on the way here.
std::uint16_t StyleBits(int style) { return static_cast<std::uint16_t>(style); }

Budget* BudgetOf(const QuillmarkResourceFile* file) { return file == nullptr ? nullptr : file->budget(); }

}  // namespace

Family::Family(QuillmarkResourceFile* file, Handle fond)
    : file_(file),
      fond_(fond),
      record_(HandleBytes(fond)),
      map_name_(StoredResourceName(fond)),
      stored_name_(map_name_.value_or(std::string())),
      styles_(record_, BudgetOf(file)),
      style_mapping_(record_, BudgetOf(file)) {
  if (fond != nullptr) GetResInfo(fond, &id_, nullptr, nullptr);
}

const FondKerning& Family::kerning() {
  if (!kerning_) kerning_.emplace(record_, BudgetOf(file_));
  return *kerning_;
}

std::uint32_t Family::getStyleOffsetFromFOND() const { return StyleMappingOffset(record_).value_or(0); }

bool Family::isDoubleByteFOND() const {
  if (record_.size() < kFondHeaderSize) return false;
  if (U16At(record_, kInternationalInfoOffset) != 0) return true;
  const auto family = I16At(record_, kFamilyIdOffset);
  return family >= kFirstDoubleByteFamily && family < kEndOfDoubleByteFamilies;
}

int Family::getResIDForFOND(int index) const {
  const auto entry = FondEntryAt(record_, index);
  return entry ? entry->id : -1;
}

bool Family::styleExists(int style) const { return !styles_.EntriesOf(StyleBits(style)).empty(); }

std::int16_t Family::getFirstResourceID(std::int16_t style) const {
  const auto entries = styles_.EntriesOf(StyleBits(style));
  return entries.empty() ? std::int16_t{-1} : entries.front().id;
}

std::optional<std::int16_t> Family::FirstOutlineOfStyle(std::int16_t style) const {
  return styles_.OutlineOf(StyleBits(style));
}

bool Family::shouldHavePrinterFile(int style) const { return !styles_.OutlineOf(StyleBits(style)); }

std::vector<std::int16_t> Family::getSortedNFNTsForFOND(int style) const {
  // Only this function compares the style as an unsigned number: codes from 0x8000, which styles() hands out
  // as negative ones, match nothing here.
  if (style != StyleBits(style)) return {};
  std::vector<std::int16_t> ids;
  for (const FondEntry& entry : styles_.EntriesOf(StyleBits(style))) ids.push_back(entry.id);
  Charge(BudgetOf(file_), ids.size() * Budget::kInsertion);
  return SortedIds(std::move(ids));
}

}  // namespace quillmark
