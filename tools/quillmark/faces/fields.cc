#include "faces/fields.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

template <typename T>
Json OrNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json();
}

}  // namespace

const std::vector<Field>& AllFields() {
  static const auto* const fields = new std::vector<Field>{
      {"path", "FILE", [](const Face& face) { return Json(face.path); }, true},
      {"face", "FACE", [](const Face& face) { return Json(face.index); }},
      {"postScriptName", "POSTSCRIPT NAME", [](const Face& face) { return Json(face.post_script_name); }},
      {"family", "FAMILY", [](const Face& face) { return Json(face.family); }},
      {"fullName", "FULL NAME", [](const Face& face) { return Json(face.full_name); }},
      {"displayName", "DISPLAY NAME", [](const Face& face) { return Json(face.display_name); }},
      {"windowsFullName", "WINDOWS FULL NAME", [](const Face& face) { return Json(face.windows_full_name); }},
      {"styles", "STYLES", [](const Face& face) { return Json(face.styles); }},
      {"class", "CLASS", [](const Face& face) { return Json(face.classification); }},
      {"foundry", "FOUNDRY", [](const Face& face) { return Json(face.foundry); }},
      {"kind", "KIND", [](const Face& face) { return Json(face.kind); }},
      {"version", "VERSION", [](const Face& face) { return Json(face.version); }},
      {"platform", "PLATFORM", [](const Face& face) { return Json(face.platform); }},
      {"checksum", "CHECKSUM", [](const Face& face) { return Json(Hex(face.checksum)); }},
      {"legacyChecksum", "LEGACY CHECKSUM", [](const Face& face) { return Json(Hex(face.legacy_checksum)); }},
      {"kerningChecksum", "KERNING CHECKSUM",
       [](const Face& face) { return Json(Hex(face.kerning_checksum)); }},
      {"outlineFileSize", "OUTLINE FILE SIZE", [](const Face& face) { return Json(face.outline_file_size); }},
      {"printerFont", "PRINTER FONT",
       [](const Face& face) { return face.outline_file.empty() ? Json() : Json(face.outline_file); }, true},
      {"printerFontExists", "PRINTER FONT EXISTS",
       [](const Face& face) { return face.outline_file.empty() ? Json() : Json(face.outline_file_exists); }},
      {"fondID", "FOND", [](const Face& face) { return OrNull(face.fond_id); }},
      {"style", "STYLE", [](const Face& face) { return OrNull(face.style); }},
  };
  return *fields;
}

const Field* FindField(const std::string& name) {
  const auto found = std::find_if(AllFields().begin(), AllFields().end(),
                                  [&](const Field& field) { return field.name == name; });
  return found == AllFields().end() ? nullptr : &*found;
}

std::string FieldText(const Field& field, const Face& face) {
  const Json value = field.value(face);
  if (value.is_null()) return {};
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return value.dump();
  std::string joined;
  for (const Json& part : value) joined += (joined.empty() ? "" : "; ") + part.get<std::string>();
  return joined;
}

}  // namespace quillmark::tool
