#include "analysis/font_extension.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

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
  std::string extension(text.substr(dot + 1));
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const auto* const found = std::find(std::begin(kExtensions), std::end(kExtensions), extension);
  return static_cast<FontExtension>(found - std::begin(kExtensions));  // past the end is kExtensionOther
}

}  // namespace quillmark
