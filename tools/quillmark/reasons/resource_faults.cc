#include "reasons/resource_faults.h"

#include <algorithm>

#include "analysis/font_extension.h"
#include "platform/core_foundation/cf_ref.h"
#include "resources/resource_access.h"
#include "text/type_text.h"

namespace quillmark::tool {
namespace {

constexpr int kMostTypesNamed = 8;

}  // namespace

ResourceFileHolder OpenResources(const std::string& path) {
  const CFRef<CFStringRef> name =
      Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  return ResourceFileHolder(name ? AllocateResourceFile(name.get(), true) : nullptr);
}

std::optional<MapFault> FaultOfMap(const Fork& fork) {
  MapFault fault;
  if (ResourceMap::Open(fork, nullptr, &fault)) return std::nullopt;
  return fault;
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

}  // namespace quillmark::tool
