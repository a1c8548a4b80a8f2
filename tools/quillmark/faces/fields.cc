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

// Null for a face without a printer font.
template <auto kMember>
Json PrinterFontValue(const Face& face) {
  return face.outline_file.empty() ? Json() : Json(face.*kMember);
}

FaceNeeds Needs(std::uint32_t attributes) { return {attributes}; }

}  // namespace

const std::vector<Field>& AllFields() {
  static const auto* const fields = new std::vector<Field>{
      {"path", "FILE", Value<&Face::path>, {}, FieldUse::kPath},
      {"face", "FACE", Value<&Face::index>},
      {"postScriptName", "POSTSCRIPT NAME", Value<&Face::post_script_name>,
       Needs(QM_ATTRIBUTE_POSTSCRIPT_NAME)},
      {"family", "FAMILY", Value<&Face::family>, Needs(QM_ATTRIBUTE_FAMILY)},
      {"fullName", "FULL NAME", Value<&Face::full_name>, Needs(QM_ATTRIBUTE_FULL_NAME)},
      {"displayName", "DISPLAY NAME", Value<&Face::display_name>, Needs(QM_ATTRIBUTE_DISPLAY_NAME)},
      {"windowsFullName", "WINDOWS FULL NAME", Value<&Face::windows_full_name>,
       Needs(QM_ATTRIBUTE_WINDOWS_FULL_NAME | QM_ATTRIBUTE_FULL_NAME)},
      {"styles", "STYLES", Value<&Face::styles>,
       Needs(QM_ATTRIBUTE_POSTSCRIPT_NAME | QM_ATTRIBUTE_FULL_NAME) | FaceNeeds{.styles = true}},
      {"class", "CLASS", Value<&Face::classification>,
       Needs(QM_ATTRIBUTE_FAMILY) | FaceNeeds{.classification = true}},
      {"foundry", "FOUNDRY", Value<&Face::foundry>, Needs(QM_ATTRIBUTE_FOUNDRY)},
      {"kind", "KIND", Value<&Face::kind>, Needs(QM_ATTRIBUTE_KIND)},
      {"version", "VERSION", Value<&Face::version>, Needs(QM_ATTRIBUTE_VERSION)},
      {"platform", "PLATFORM", Value<&Face::platform>, Needs(QM_ATTRIBUTE_PLATFORM)},
      {"checksum", "CHECKSUM", HexValue<&Face::checksum>, Needs(QM_ATTRIBUTE_CHECKSUM)},
      {"legacyChecksum", "LEGACY CHECKSUM", HexValue<&Face::legacy_checksum>,
       Needs(QM_ATTRIBUTE_LEGACY_CHECKSUM)},
      {"kerningChecksum", "KERNING CHECKSUM", HexValue<&Face::kerning_checksum>,
       Needs(QM_ATTRIBUTE_KERNING_CHECKSUM)},
      {"outlineFileSize", "OUTLINE FILE SIZE", Value<&Face::outline_file_size>,
       Needs(QM_ATTRIBUTE_OUTLINE_FILE_SIZE)},
      {"printerFont", "PRINTER FONT", PrinterFontValue<&Face::outline_file>,
       Needs(QM_ATTRIBUTE_OUTLINE_FILE_NAME), FieldUse::kPath},
      {"printerFontExists", "PRINTER FONT EXISTS", PrinterFontValue<&Face::outline_file_exists>,
       Needs(QM_ATTRIBUTE_OUTLINE_FILE_NAME)},
      {"fondID", "FOND", ValueOrNull<&Face::fond_id>},
      {"style", "STYLE", ValueOrNull<&Face::style>},
      {"variable", "VARIABLE", ValueOrNull<&Face::variable>, Needs(kVariationAxes), FieldUse::kOnRequest},
  };
  return *fields;
}

const Field* FindField(const std::string& name) {
  const auto found = std::find_if(AllFields().begin(), AllFields().end(),
                                  [&](const Field& field) { return field.name == name; });
  return found == AllFields().end() ? nullptr : &*found;
}

FaceNeeds NeedsOf(const std::vector<const Field*>& fields) {
  FaceNeeds needs{FaceNeeds::kAlways};
  for (const Field* field : fields) needs = needs | field->needs;
  return needs;
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
