#include "analysis/font_extension.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "support/om_string.h"

namespace quillmark {
namespace {

// In the order of FontExtension.
constexpr std::string_view kExtensions[kExtensionOther] = {"ttf", "otf", "ps",  "dfont", "ttc", "fot",
                                                           "fnt", "fon", "pfm", "pfb",   "mmm", "inf"};
constexpr std::size_t kLongestSuffix = 6;  // with the dot; anything longer is not looked at

}  // namespace

FontExtension fontTypeFromExtension(const char* path) {
  const std::string_view text(path);
  const std::size_t dot = text.rfind('.');
  if (dot == std::string_view::npos || text.size() - dot > kLongestSuffix) return kExtensionOther;
  const OmString extension = OmString(std::string(text.substr(dot + 1))).ToLower();
  const auto* const found = std::ranges::find(kExtensions, extension.str());
  return static_cast<FontExtension>(found - std::begin(kExtensions));  // past the end is kExtensionOther
}

}  // namespace quillmark
