#include "resource_listing.h"

#include <algorithm>

#include "platform/cf_ref.h"
#include "platform/text_encoding.h"
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

ListedStyle LookAtStyle(QuillmarkResourceFile& file, Handle fond, const FondStyles& styles,
                        std::int16_t style) {
  ListedStyle listed;
  listed.style = style;
  const auto entries = styles.Of(static_cast<std::uint16_t>(style));
  listed.entries.assign(entries.begin(), entries.end());
  listed.post_script_name = file.getPostScriptNameForFOND(fond, style);
  if (file.shouldHavePrinterFile(fond, style)) {
    listed.printer_font = file.getPSPrinterNameForFOND(fond, style);
    listed.printer_font_exists = !listed.printer_font.empty() && Adopt(CreatePrinterPath(&file, fond, style));
  }
  return listed;
}

}  // namespace

std::size_t ListResources(QuillmarkResourceFile& file, std::vector<ListedResource>& listed) {
  std::size_t left_out = 0;
  const int types = file.count1ResTypes();
  for (int t = 1; t <= types; ++t) {
    ResType type = 0;
    file.getResourceTypeViaGet1IndType(&type, t);
    const int count = std::max(file.countResType(type), 0);
    const int shown =
        static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(count), kMostRows - listed.size()));
    for (int i = 1; i <= shown; ++i) listed.push_back(Look(file, type, i));
    left_out += static_cast<std::size_t>(count - shown);
  }
  return left_out;
}

ListedFond LookAtFond(QuillmarkResourceFile& file, Handle fond) {
  ListedFond listed;
  Str255 raw_name = {};
  GetResInfo(fond, &listed.id, nullptr, raw_name);
  listed.name = file.getResourceNameFromFOND(fond).value_or(NameText(raw_name));
  const FondStyles styles(HandleBytes(fond));
  for (const std::int16_t style : styles.codes()) {
    listed.styles.push_back(LookAtStyle(file, fond, styles, style));
  }
  return listed;
}

}  // namespace quillmark::tool
