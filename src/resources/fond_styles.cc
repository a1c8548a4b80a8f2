// What the association tables of a file's FONDs say: styles, resource IDs, and whether an outline is inside.
#include <algorithm>
#include <set>
#include <utility>

#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "resources/sorted_ids.h"

namespace quillmark {
namespace {

constexpr std::size_t kFamilyIdOffset = 2;
constexpr std::size_t kInternationalInfoOffset = 48;  // the second of two words
constexpr std::int16_t kFirstDoubleByteFamily = 16384;
constexpr std::int16_t kEndOfDoubleByteFamilies = 16896;

// 16 bits of a style count, however it was widened on the way here.
std::uint16_t StyleBits(int style) { return static_cast<std::uint16_t>(style); }

}  // namespace

Bytes QuillmarkResourceFile::Record(Handle fond) {
  UseResFile(ref_num_);
  return HandleBytes(fond);
}

// Handles are given back and their memory reused, so that only its place in the file tells one FOND from
// another. A handle without one is read each time.
void QuillmarkResourceFile::Recall(Handle fond) {
  const Bytes record = Record(fond);
  const auto place = PlaceOf(fond);
  if (place && place == fond_place_) return;
  fond_place_ = place;
  fond_styles_ = FondStyles(record);
  names_old_bitmap_.reset();
}

const FondStyles& QuillmarkResourceFile::StylesOf(Handle fond) {
  Recall(fond);
  return fond_styles_;
}

std::uint32_t QuillmarkResourceFile::getStyleOffsetFromFOND(Handle fond) {
  return StyleMappingOffset(Record(fond)).value_or(0);
}

bool QuillmarkResourceFile::isDoubleByteFOND(Handle fond) {
  const Bytes record = Record(fond);
  if (record.size() < kFondHeaderSize) return false;
  if (U16At(record, kInternationalInfoOffset) != 0) return true;
  const auto family = I16At(record, kFamilyIdOffset);
  return family >= kFirstDoubleByteFamily && family < kEndOfDoubleByteFamilies;
}

std::vector<std::int16_t> QuillmarkResourceFile::getSortedStylesForFOND(Handle fond) {
  return StylesOf(fond).codes();
}

std::vector<std::int16_t> QuillmarkResourceFile::getSortedStyles() {
  std::set<std::uint16_t> styles;
  std::size_t needed = 60;
  for (const std::int16_t id : getSortedResIDsForType(FourCharCode("FOND"))) {
    const ResourceHandle fond(getResourceHandleForType(FourCharCode("FOND"), id));
    // The size asked of a record grows with its place in the file, not with its entries: results rely on it.
    if (Record(fond.get()).size() >= needed) {
      for (const std::int16_t code : StylesOf(fond.get()).codes()) styles.insert(StyleBits(code));
    }
    needed += 6;
  }
  std::vector<std::int16_t> codes;
  codes.reserve(styles.size());
  for (const std::uint16_t style : styles) codes.push_back(static_cast<std::int16_t>(style));
  return codes;
}

std::vector<std::int16_t> QuillmarkResourceFile::getSortedNFNTsForFOND(Handle fond, int style) {
  // The one comparison with the stored style as an unsigned number: codes from 0x8000, which are handed on
  // as negative ones, match nothing here.
  if (style != StyleBits(style)) return {};
  std::vector<std::int16_t> ids;
  for (const FondEntry& entry : StylesOf(fond).Of(StyleBits(style))) ids.push_back(entry.id);
  return SortedIds(std::move(ids));
}

bool QuillmarkResourceFile::styleExists(int style, Handle fond) {
  return !StylesOf(fond).Of(StyleBits(style)).empty();
}

int QuillmarkResourceFile::getResIDForFOND(Handle fond, int index) {
  const auto entry = FondEntryAt(Record(fond), index);
  return entry ? entry->id : -1;
}

std::optional<std::int16_t> QuillmarkResourceFile::FirstResIDOfStyle(Handle fond, std::int16_t style) {
  const auto entries = StylesOf(fond).Of(StyleBits(style));
  if (entries.empty()) return std::nullopt;
  return entries.front().id;
}

std::optional<std::int16_t> QuillmarkResourceFile::FirstOutlineOfStyle(Handle fond, std::int16_t style) {
  return StylesOf(fond).OutlineOf(StyleBits(style));
}

bool QuillmarkResourceFile::shouldHavePrinterFile(Handle fond, int style) {
  return !StylesOf(fond).OutlineOf(StyleBits(style));
}

}  // namespace quillmark
