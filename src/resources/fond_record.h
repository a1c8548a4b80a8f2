// The shared reading of a FOND resource: its font association table and its resource name.
// The table is the stored count less one at byte 52 (signed), then records of size, style and resource ID.
// Records that do not lie wholly inside the resource do not exist for any reader.
// Source: Inside Macintosh: Text, "The Font Family Resource". Tests: tests/resources/family_test.cc.
#ifndef QUILLMARK_RESOURCES_FOND_RECORD_H_
#define QUILLMARK_RESOURCES_FOND_RECORD_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/budget.h"
#include "platform/byte_reader.h"
#include "platform/resource_manager/resource_manager.h"

namespace quillmark {

// The fixed part of a FOND; the association table, with its count, follows.
inline constexpr std::size_t kFondHeaderSize = 52;

// Where the style mapping table begins, as stored; nothing when the header is not all there.
std::optional<std::uint32_t> StyleMappingOffset(Bytes record);

struct FondEntry {
  std::int16_t size;    // points; 0 for an outline
  std::uint16_t style;  // classic style bits
  std::int16_t id;      // of the NFNT or FONT, or of the sfnt of an outline
};

// How many of the stated entries lie inside `record`; 0 when it is too short to state a count.
int CountFondEntries(Bytes record);
// Entry `index`, from 0; nothing when it is not one of those.
std::optional<FondEntry> FondEntryAt(Bytes record, int index);

// The entries grouped by style, so that asking for every style of a family in turn stays linear.
class FondStyles {
 public:
  explicit FondStyles(Bytes record, Budget* budget = nullptr);

  // The distinct styles, ascending as unsigned numbers, handed on as signed ones.
  const std::vector<std::int16_t>& codes() const { return codes_; }
  // The entries of one style in the order of the table.
  std::span<const FondEntry> EntriesOf(std::uint16_t style) const;
  // Resource ID of the first outline of the style.
  std::optional<std::int16_t> OutlineOf(std::uint16_t style) const;

 private:
  std::vector<FondEntry> entries_;
  std::vector<std::int16_t> codes_;
};

// The name of a resource as it is stored; nothing when the handle is not a resource.
std::optional<std::string> StoredResourceName(Handle resource);

// Families of CID-keyed fonts are recognised by the stored name of their FOND.
bool IsCidFamilyName(std::string_view stored_name);

}  // namespace quillmark

#endif
