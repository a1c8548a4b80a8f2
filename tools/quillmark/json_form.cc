#include "json_form.h"

#include <nlohmann/json.hpp>

namespace quillmark::tool {
namespace {

nlohmann::ordered_json Object(const Face& face) {
  nlohmann::ordered_json object = {
      {"path", face.path},
      {"face", face.index},
      {"postScriptName", face.post_script_name},
      {"family", face.family},
      {"fullName", face.full_name},
      {"displayName", face.display_name},
      {"windowsFullName", face.windows_full_name},
      {"styles", face.styles},
      {"class", face.classification},
      {"foundry", face.foundry},
      {"kind", face.kind},
      {"version", face.version},
      {"platform", face.platform},
      {"checksum", Hex(face.checksum)},
      {"legacyChecksum", Hex(face.legacy_checksum)},
      {"kerningChecksum", Hex(face.kerning_checksum)},
      {"outlineFileSize", face.outline_file_size},
  };
  if (!face.outline_file.empty()) {
    object["printerFont"] = face.outline_file;
    object["printerFontExists"] = face.outline_file_exists;
  }
  if (face.fond_id) {
    object["fondID"] = *face.fond_id;
    object["style"] = *face.style;
  }
  return object;
}

}  // namespace

void JsonArray::Add(const Face& face) {
  constexpr auto kReplace = nlohmann::ordered_json::error_handler_t::replace;
  out_ << (empty_ ? "[\n  " : ",\n  ") << Object(face).dump(-1, ' ', false, kReplace);
  empty_ = false;
}

void JsonArray::Finish() { out_ << (empty_ ? "[]\n" : "\n]\n"); }

}  // namespace quillmark::tool
