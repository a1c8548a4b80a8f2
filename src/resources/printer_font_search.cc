// Finds the printer font files that the families of a resource file need. They lie beside it.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "resources/family.h"
#include "resources/printer_font_name.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_handle.h"
#include "support/om_string.h"

namespace quillmark {

std::optional<std::string> QuillmarkResourceFile::PathOfPrinterFile(const std::string& name) const {
  if (name.empty() || name.find('/') != std::string::npos) return std::nullopt;
  return folder_ + name;
}

// Both forms of the name are printable ASCII, hence valid UTF-8.
std::string QuillmarkResourceFile::PrinterFileNameOf(const PrinterFontName& name) {
  const auto known = printer_file_from_post_script_name_.find(name.post_script_name);
  if (known != printer_file_from_post_script_name_.end()) return known->second;
  std::string file_name;
  if (name.ends_at_second_hyphen) {
    // "Ryumin-Light-83pv-RKSJ-H" gives "Ryumin-Light". Without a first hyphen the search finds no second one.
    const std::size_t second = name.post_script_name.find('-', name.post_script_name.find('-') + 1);
    if (second == std::string::npos) return {};
    file_name = name.post_script_name.substr(0, second);
  } else {
    Str255 in;
    Str255 out;
    GetPostScriptFontFileName(OmString(name.post_script_name).GetPascalString(in), out);
    file_name = AsText(Bytes(out).subspan(1, out[0]));
  }
  Charge(budget_, Budget::kInsertion + (name.post_script_name.size() + file_name.size()) * Budget::kKeptByte);
  printer_file_from_post_script_name_.emplace(name.post_script_name, file_name);
  return file_name;
}

std::optional<std::string> QuillmarkResourceFile::getPrinterNameFromFontActivation(
    const std::optional<std::string>& postScriptName) {
  if (!postScriptName) return std::nullopt;
  activate();
  return std::nullopt;  // no container, no fonts in it
}

std::vector<std::int16_t> QuillmarkResourceFile::getSortedStyles() {
  std::set<std::uint16_t> styles;
  std::size_t needed = 60;
  for (const std::int16_t id : getSortedResIDsForType(kFond)) {
    const ResourceHandle fond(getResourceHandleForType(kFond, id));
    const Bytes record = HandleBytes(fond.get());
    // The required size grows by 6 for each FOND, in order of ID, whatever it holds: stored results rely on
    // it.
    if (record.size() >= needed) {
      const FondStyles family(record, budget_);
      for (const std::int16_t code : family.codes()) styles.insert(static_cast<std::uint16_t>(code));
    }
    needed += 6;
  }
  return {styles.begin(), styles.end()};
}

std::vector<std::string> QuillmarkResourceFile::getPrinterFiles() {
  struct Face {
    std::uint16_t style;
    bool has_outline;
    const PrinterFontName* name;
  };
  const std::vector<std::int16_t> listed = getSortedStyles();
  const std::set<std::int16_t> styles(listed.begin(), listed.end());
  std::set<PrinterFontName> names;  // each name once, though many styles may share it
  std::vector<Face> faces;
  for (const std::int16_t id : getSortedResIDsForType(kFond)) {
    const Family family(this, getResourceHandleForType(kFond, id));
    for (const std::int16_t code : family.styles().codes()) {
      if (!styles.contains(code)) continue;
      const auto style = static_cast<std::uint16_t>(code);
      const auto name = names.insert(family.ComposePrinterFontName(style)).first;
      Charge(budget_, Budget::kInsertion * 4 + name->post_script_name.size());
      faces.push_back({style, !family.shouldHavePrinterFile(style), &*name});
    }
  }
  // By style and then by ID: the file name that a PostScript name meets first stays with it.
  std::ranges::stable_sort(faces, {}, &Face::style);

  std::set<std::string> seen;
  std::set<std::string> paths;
  for (const Face& face : faces) {
    const std::string name = PrinterFileNameOf(*face.name);
    const auto path = PathOfPrinterFile(name);
    if (!path) continue;
    const bool is_new = seen.insert(name).second;
    if (face.has_outline) {
      paths.erase(*path);  // an outline inside covers the style, for every family that names this file
    } else if (is_new) {
      paths.insert(*path);
    }
  }
  return {paths.begin(), paths.end()};
}

}  // namespace quillmark
