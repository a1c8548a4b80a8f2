// Which printer font files the families of a resource file need. They lie beside it.
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "resources/printer_font_name.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

// "Ryumin-Light-83pv-RKSJ-H" gives "Ryumin-Light"; nothing when there is no second hyphen.
std::optional<std::string> UpToSecondHyphen(const std::string& name) {
  const auto first = name.find('-');
  if (first == std::string::npos) return std::nullopt;
  const auto second = name.find('-', first + 1);
  if (second == std::string::npos) return std::nullopt;
  return name.substr(0, second);
}

// The path without its last component: "a/b" gives "a", "/b" gives "/", "b" gives nothing.
std::string FolderOf(std::string path) {
  const auto strip_slashes = [&path] {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
  };
  strip_slashes();
  if (path == "/") return path;
  path.erase(path.rfind('/') + 1);  // without a slash, the whole
  strip_slashes();
  return path;
}

}  // namespace

std::optional<std::string> QuillmarkResourceFile::PathOfPrinterFile(const std::string& name) const {
  if (name.empty() || name.find('/') != std::string::npos) return std::nullopt;
  std::string path = FolderOf(path_);
  if (!path.empty() && path.back() != '/') path += '/';
  return path + name;
}

// Both forms of the name are printable ASCII, so neither can fail to be UTF-8. Nor is there a font service
// that could know the file under another name.
std::string QuillmarkResourceFile::getPSPrinterNameForFOND(Handle fond, int style) {
  const std::string post_script_name = getPostScriptNameForFOND(fond, style);
  const auto known = printer_file_from_post_script_name_.find(post_script_name);
  if (known != printer_file_from_post_script_name_.end()) return known->second;
  if (!fond || !*fond) return {};
  std::string file_name;
  if (isDoubleByteFOND(fond) && getStyleOffsetFromFOND(fond) != 0) {
    const auto cut = UpToSecondHyphen(post_script_name);
    if (!cut) return {};
    file_name = *cut;
  } else {
    Str255 in;
    Str255 out;
    GetPostScriptFontFileName(OmString(post_script_name).GetPascalString(in), out);
    OmString text;
    text.setPStr(out);
    file_name = text.str();
  }
  printer_file_from_post_script_name_.emplace(post_script_name, file_name);
  return file_name;
}

std::optional<std::string> QuillmarkResourceFile::getPrinterNameFromFontActivation(
    const std::optional<std::string>& postScriptName) {
  if (!postScriptName) return std::nullopt;
  activate();
  return std::nullopt;  // no container, no fonts in it
}

std::vector<std::string> QuillmarkResourceFile::getPrinterFiles() {
  std::set<std::uint16_t> styles;
  for (const std::int16_t code : getSortedStyles()) styles.insert(static_cast<std::uint16_t>(code));
  // Each style with each FOND that has it, by style and then by ID: the order in which names are cached.
  std::set<std::pair<std::uint16_t, std::int16_t>> faces;
  for (const std::int16_t id : getSortedResIDsForType(FourCharCode("FOND"))) {
    const ResourceHandle fond(getResourceHandleForType(FourCharCode("FOND"), id));
    for (const std::int16_t code : getSortedStylesForFOND(fond.get())) {
      const auto style = static_cast<std::uint16_t>(code);
      if (styles.contains(style)) faces.emplace(style, id);
    }
  }

  std::set<std::string> seen;
  std::set<std::string> paths;
  for (const auto& [style, id] : faces) {
    const ResourceHandle fond(getResourceHandleForType(FourCharCode("FOND"), id));
    if (!fond.get()) continue;
    const std::string name = getPSPrinterNameForFOND(fond.get(), style);
    const auto path = PathOfPrinterFile(name);
    if (!path) continue;
    const bool is_new = seen.insert(name).second;
    if (!shouldHavePrinterFile(fond.get(), style)) {
      paths.erase(*path);  // an outline inside covers the style, for every family that names this file
    } else if (is_new) {
      paths.insert(*path);
    }
  }
  return {paths.begin(), paths.end()};
}

}  // namespace quillmark
