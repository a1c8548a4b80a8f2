#include "resources/resource_listing.h"

#include <algorithm>

#include "platform/text/text_encoding.h"
#include "resources/family.h"
#include "resources/resource_access.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kMostRows = 20000;

std::string NameText(const unsigned char* name) {
  return MacRomanToUtf8(std::string(name + 1, name + 1 + name[0]));
}

ListedResource Look(QuillmarkResourceFile& file, ResType type, int index) {
  const ResourceHandle resource(file.getResourceHandleViaGet1IndResource(type, index));
  if (resource.get() == nullptr) return {type, std::nullopt, 0, {}};
  ResID id = 0;
  Str255 name = {};
  GetResInfo(resource.get(), &id, nullptr, name);
  return {type, id, GetHandleSize(resource.get()), NameText(name)};
}

ListedStyle LookAtStyle(QuillmarkResourceFile& file, const Family& family, std::int16_t style) {
  Charge(file.budget(), Budget::kFace);
  ListedStyle listed;
  listed.style = style;
  const auto entries = family.styles().EntriesOf(static_cast<std::uint16_t>(style));
  listed.entries.assign(entries.begin(), entries.end());
  listed.post_script_name = family.getPostScriptNameForFOND(style);
  if (family.shouldHavePrinterFile(style)) {
    listed.printer_font = family.getPSPrinterNameForFOND(style);
    const auto path = file.PathOfPrinterFile(listed.printer_font);
    const FileAccess access(SystemFiles(), file.budget());
    listed.printer_font_exists = path && access.Status(*path).regular;
  }
  return listed;
}

void ListTypes(QuillmarkResourceFile& file, ResourceListing& listing) {
  const int types = file.count1ResTypes();
  for (int t = 1; t <= types; ++t) {
    ResType type = 0;
    file.getResourceTypeViaGet1IndType(&type, t);
    const auto count = static_cast<std::size_t>(std::max(file.countResType(type), 0));
    const std::size_t shown = std::min(count, kMostRows - listing.resources.size());
    for (std::size_t i = 1; i <= shown; ++i) {
      listing.resources.push_back(Look(file, type, static_cast<int>(i)));
    }
    listing.left_out += count - shown;
  }
}

// Takes ownership of the FOND.
ListedFond LookAtFond(QuillmarkResourceFile& file, Handle fond) {
  Family family(&file, fond);
  ListedFond listed;
  listed.id = family.id();
  listed.name = family.getResourceNameFromFOND().value_or(MacRomanToUtf8(family.stored_name()));
  for (const std::int16_t style : family.styles().codes()) {
    listed.styles.push_back(LookAtStyle(file, family, style));
  }
  return listed;
}

}  // namespace

void ListResources(QuillmarkResourceFile& file, ResourceListing& listing) {
  ListTypes(file, listing);
  for (const std::int16_t id : file.getSortedResIDsForType(kFond)) {
    const Handle fond = file.getResourceHandleForType(kFond, id);
    if (fond != nullptr) listing.fonds.push_back(LookAtFond(file, fond));
  }
}

}  // namespace quillmark::tool
