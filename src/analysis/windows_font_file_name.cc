#include "analysis/windows_font_file_name.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

constexpr std::size_t kExtensionLength = 3;

// The three letters after a name's last point, in lower case.
std::optional<std::string> LowerCasedExtension(const std::string& name) {
  constexpr std::size_t kShortestName = 6;
  if (name.size() < kShortestName || name[name.size() - kExtensionLength - 1] != '.') return std::nullopt;
  return OmString(name.substr(name.size() - kExtensionLength)).ToLower().str();
}

OmString WithExtension(const std::string& name, std::string_view extension) {
  return std::string(name).replace(name.size() - kExtensionLength, kExtensionLength, extension);
}

}  // namespace

bool GetWindowsMMMFontNameFromPrinterFontName(const OmString& name, OmString* result) {
  if (LowerCasedExtension(name.str()) != "pfb") return false;
  *result = WithExtension(name.str(), "mmm");
  return true;
}

bool GetWindowsPSPrinterFontNameFromFontName(const OmString& name, OmString* result) {
  const auto extension = LowerCasedExtension(name.str());
  if (extension != "pfm" && extension != "mmm") return false;
  *result = WithExtension(name.str(), "pfb");
  return true;
}

}  // namespace quillmark
