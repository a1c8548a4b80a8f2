#include "faces/fields.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

template <auto kMember>
Json Value(const Face& face) {
  return face.*kMember;
}

template <auto kMember>
Json HexValue(const Face& face) {
  return Hex(face.*kMember);
}

template <auto kMember>
Json ValueOrNull(const Face& face) {
  return face.*kMember ? Json(*(face.*kMember)) : Json();
}

}  // namespace

const std::vector<Field>& AllFields() {
  static const auto* const fields = new std::vector<Field>{
      {"path", "FILE", Value<&Face::path>, true},
      {"face", "FACE", Value<&Face::index>},
      {"postScriptName", "POSTSCRIPT NAME", Value<&Face::post_script_name>},
      {"family", "FAMILY", Value<&Face::family>},
      {"fullName", "FULL NAME", Value<&Face::full_name>},
      {"displayName", "DISPLAY NAME", Value<&Face::display_name>},
      {"windowsFullName", "WINDOWS FULL NAME", Value<&Face::windows_full_name>},
      {"styles", "STYLES", Value<&Face::styles>},
      {"class", "CLASS", Value<&Face::classification>},
      {"foundry", "FOUNDRY", Value<&Face::foundry>},
      {"kind", "KIND", Value<&Face::kind>},
      {"version", "VERSION", Value<&Face::version>},
      {"platform", "PLATFORM", Value<&Face::platform>},
      {"checksum", "CHECKSUM", HexValue<&Face::checksum>},
      {"legacyChecksum", "LEGACY CHECKSUM", HexValue<&Face::legacy_checksum>},
      {"kerningChecksum", "KERNING CHECKSUM", HexValue<&Face::kerning_checksum>},
      {"outlineFileSize", "OUTLINE FILE SIZE", Value<&Face::outline_file_size>},
      {"printerFont", "PRINTER FONT",
       [](const Face& face) { return face.outline_file.empty() ? Json() : Json(face.outline_file); }, true},
      {"printerFontExists", "PRINTER FONT EXISTS",
       [](const Face& face) { return face.outline_file.empty() ? Json() : Json(face.outline_file_exists); }},
      {"fondID", "FOND", ValueOrNull<&Face::fond_id>},
      {"style", "STYLE", ValueOrNull<&Face::style>},
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
