#include "resource_faults.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "analysis/font_extension.h"
#include "platform/cf_ref.h"
#include "platform/resource_map_format.h"
#include "sfnt_faults.h"
#include "type_text.h"

namespace quillmark::tool {
namespace {

using namespace resource_format;

constexpr ResType kFond = FourCharCode("FOND");
constexpr ResType kSfnt = FourCharCode("sfnt");
constexpr int kMostTypesNamed = 8;
// Real suitcases have tens of outlines, and a small file can name one large outline thousands of times.
constexpr std::size_t kMostOutlinesChecked = 256;
constexpr int kMostOutlinesTold = 3;

std::string Past(const std::string& part, std::uint64_t end, const std::string& whole, std::uint64_t size) {
  return part + " runs to byte " + std::to_string(end) + ", and " + whole + " has " + std::to_string(size);
}

// The list of references that an entry of the type list states; empty when it lies inside the map.
std::string TypeFault(Bytes type, std::size_t list, std::size_t map_length) {
  const std::uint32_t count = (U16At(type, 4).value_or(0) + 1u) & 0xFFFFu;
  const std::uint64_t end = list + U16At(type, 6).value_or(0) + std::uint64_t{count} * kReferenceSize;
  if (count == 0 || end <= map_length) return {};
  return Past("the list of " + TypeText(U32At(type, 0).value_or(0)) + " resources", end, "the map",
              map_length);
}

// What stands against the outline of that number; nothing when its names can be read.
std::optional<std::string> OutlineFault(QuillmarkResourceFile& file, std::int16_t id) {
  const std::string name = "sfnt " + std::to_string(id);
  const ResourceHandle outline(getHandleOfTypeAndResID(&file, kSfnt, id));
  if (outline.get() == nullptr) return name + " is not in the file";
  const auto fault = NameFault(SfntData(HandleBytes(outline.get())), name);
  return fault ? std::optional(name + " is damaged: " + *fault) : std::nullopt;
}

// Why one style of a FOND gives no face: its outline is looked for in the first association of the style,
// failing that its printer font. Bitmaps are never read, so that those without an outline are no damage.
Explanation StyleFault(QuillmarkResourceFile& file, Handle fond, std::int16_t style) {
  const std::int16_t id = getFirstResourceIDFromHandleAndStyle(&file, fond, style);
  const ResourceHandle outline(getHandleOfTypeAndResID(&file, kSfnt, id));
  if (outline.get() != nullptr) {
    const std::string name = "sfnt " + std::to_string(id);
    const Bytes bytes = HandleBytes(outline.get());
    if (auto fault = NameFault(SfntData(bytes), name)) {
      return {Outcome::kDamaged, name + " is damaged: " + *fault};
    }
    return {Outcome::kDamaged, name + " is neither a TrueType nor an OpenType font"};
  }
  if (file.shouldHavePrinterFile(fond, style)) {
    const std::string name = file.getPSPrinterNameForFOND(fond, style);
    if (name.empty()) {
      return {Outcome::kOther,
              "it has bitmaps only, and states no PostScript name that would lead to a printer font"};
    }
    return {Outcome::kDamaged,
            name.find('/') != std::string::npos
                ? "the name of its printer font holds a slash, and is not followed"
                : "a printer font is looked for only when the file holds NFNT resources, and it holds none"};
  }
  return {Outcome::kDamaged,
          "no readable sfnt resource has the number " + std::to_string(id) + ", which the style names first"};
}

Explanation FondFault(QuillmarkResourceFile& file, Handle fond) {
  if (fond == nullptr || HandleBytes(fond).empty()) {
    return {Outcome::kDamaged, "the data of its first FOND lie outside the file"};
  }
  ResID id = 0;
  GetResInfo(fond, &id, nullptr, nullptr);
  const std::string name = "FOND " + std::to_string(id);
  if (getCountOfUniqueStyles(&file, fond) == 0) return {Outcome::kDamaged, name + " lists no styles"};
  const std::int16_t style = getStyleFromStyleIndex(&file, fond, 0);
  const Explanation fault = StyleFault(file, fond, style);
  return {fault.outcome, name + ", style " + std::to_string(style) + ": " + fault.reason};
}

}  // namespace

ResourceFileHolder OpenResources(const std::string& path) {
  const CFRef<CFStringRef> name =
      Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  return ResourceFileHolder(name ? AllocateResourceFile(name.get(), true) : nullptr);
}

std::optional<std::string> MapFault(const Fork& fork) {
  std::array<std::uint8_t, kForkHeaderSize> header = {};
  if (fork.ReadAt(0, header) != header.size()) return "it ends inside its header";
  const std::uint64_t data_start = U32At(header, 0).value_or(0);
  const std::uint64_t map_start = U32At(header, 4).value_or(0);
  const std::uint64_t data_length = U32At(header, 8).value_or(0);
  const std::uint64_t map_length = U32At(header, 12).value_or(0);
  if (data_start + data_length > fork.length()) {
    return Past("its data area", data_start + data_length, "the fork", fork.length());
  }
  if (map_start + map_length > fork.length()) {
    return Past("its map", map_start + map_length, "the fork", fork.length());
  }
  if (map_length < kMapHeaderSize + kCountSize) return "its map has fewer than 30 bytes";

  // The type list begins at a 16-bit offset and holds at most 65,535 types.
  std::vector<std::uint8_t> map(
      std::min<std::uint64_t>(map_length, 0xFFFF + kCountSize + 0xFFFF * kTypeSize));
  map.resize(fork.ReadAt(map_start, map));
  const std::size_t list = U16At(map, kTypeListOffset).value_or(0);
  const auto stored_count = U16At(map, list);
  if (!stored_count) return Past("its type list", list + kCountSize, "the map", map_length);
  const std::size_t count = (*stored_count + 1u) & 0xFFFFu;
  const auto types = Slice(map, list + kCountSize, count * kTypeSize);
  if (!types) return Past("its type list", list + kCountSize + count * kTypeSize, "the map", map_length);
  ByteReader reader(*types);
  while (const auto type = reader.Take(kTypeSize)) {
    if (std::string fault = TypeFault(*type, list, map_length); !fault.empty()) return fault;
  }
  return std::nullopt;
}

Explanation WhyNoFonts(QuillmarkResourceFile& file) {
  const bool is_claimed = fontTypeFromExtension(file.file().c_str()) == kExtensionDfont;
  const Outcome outcome = is_claimed ? Outcome::kDamaged : Outcome::kOther;
  const int count = file.count1ResTypes();
  if (count == 0) return {outcome, "a resource file without fonts: it holds no resources"};
  std::string types;
  for (int i = 1; i <= std::min(count, kMostTypesNamed); ++i) {
    ResType type = 0;
    file.getResourceTypeViaGet1IndType(&type, i);
    types += (i == 1 ? "" : ", ") + TypeText(type);
  }
  if (count > kMostTypesNamed) types += " and " + std::to_string(count - kMostTypesNamed) + " more types";
  if (file.countResType(kSfnt) > 0) {
    return {Outcome::kDamaged, "a resource file with fonts that no FOND resource names: it holds " + types +
                                   "; quillmark split writes those that are TrueType or OpenType to files"};
  }
  return {outcome, "a resource file without fonts: it holds " + types};
}

Explanation LostOutlines(QuillmarkResourceFile& file) {
  std::set<std::int16_t> checked;
  std::string reason;
  int count = 0;
  for (int i = 1; i <= file.countResType(kFond) && checked.size() < kMostOutlinesChecked; ++i) {
    const ResourceHandle fond(file.getResourceHandleViaGet1IndResource(kFond, i));
    for (const std::int16_t style : file.getSortedStylesForFOND(fond.get())) {
      const auto id = file.FirstOutlineOfStyle(fond.get(), style);
      if (!id || checked.size() == kMostOutlinesChecked || !checked.insert(*id).second) continue;
      const auto fault = OutlineFault(file, *id);
      if (fault && ++count <= kMostOutlinesTold) reason += (count == 1 ? "" : "; ") + *fault;
    }
  }
  if (count > kMostOutlinesTold) {
    reason += "; and " + std::to_string(count - kMostOutlinesTold) + " more outlines";
  }
  return {reason.empty() ? Outcome::kFaces : Outcome::kIncomplete, reason};
}

Explanation WhyNoFamilyFace(QuillmarkResourceFile& file) {
  const ResourceHandle fond(file.getResourceHandleViaGet1IndResource(kFond, 1));
  const int others = file.countResType(kFond) - 1;
  const Explanation fault = FondFault(file, fond.get());
  std::string reason =
      "a font family file with neither a readable outline font nor the name of a printer font (" +
      fault.reason;
  if (others > 0) reason += "; its other FOND resources give no face either";
  return {fault.outcome, reason + ")"};
}

}  // namespace quillmark::tool
