// The attributes that an array holds of a face, one row for each: their names, the functions that read them,
// and where a specifier and a Face keep them; and the faces of an array.
#ifndef QUILLMARK_TOOL_FACES_ATTRIBUTES_H_
#define QUILLMARK_TOOL_FACES_ATTRIBUTES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "api/font_array.h"
#include "faces/face.h"
#include "quillmark/quillmark.h"

namespace quillmark::tool {

struct TextAttribute {
  const char* name;  // as the faces' JSON has it
  std::uint32_t attribute;
  std::int32_t (*get)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
  OmString QM_FontSpecifier::*in_array;
  std::string Face::*in_face;
};
inline constexpr TextAttribute kTextAttributes[] = {
    {"postScriptName", QM_ATTRIBUTE_POSTSCRIPT_NAME, QM_GetPostScriptName, &QM_FontSpecifier::postScriptName,
     &Face::post_script_name},
    {"family", QM_ATTRIBUTE_FAMILY, QM_GetFamilyName, &QM_FontSpecifier::family, &Face::family},
    {"fullName", QM_ATTRIBUTE_FULL_NAME, QM_GetFullName, &QM_FontSpecifier::fullName, &Face::full_name},
    {"displayName", QM_ATTRIBUTE_DISPLAY_NAME, QM_GetDisplayName, &QM_FontSpecifier::displayName,
     &Face::display_name},
    {"windowsFullName", QM_ATTRIBUTE_WINDOWS_FULL_NAME, QM_GetWindowsFullName,
     &QM_FontSpecifier::windowsFullName, &Face::windows_full_name},
    {"foundry", QM_ATTRIBUTE_FOUNDRY, QM_GetFoundryName, &QM_FontSpecifier::foundry, &Face::foundry},
    {"kind", QM_ATTRIBUTE_KIND, QM_GetKindName, &QM_FontSpecifier::kind, &Face::kind},
    {"version", QM_ATTRIBUTE_VERSION, QM_GetVersion, &QM_FontSpecifier::version, &Face::version},
    {"platform", QM_ATTRIBUTE_PLATFORM, QM_GetPlatform, &QM_FontSpecifier::platform, &Face::platform},
    {"printerFont", QM_ATTRIBUTE_OUTLINE_FILE_NAME, QM_GetPrinterFont, &QM_FontSpecifier::outlineFileName,
     &Face::outline_file},
};

struct NumberAttribute {
  const char* name;
  bool is_hexadecimal;  // in JSON
  std::uint32_t attribute;
  std::int32_t (*get)(const QM_FontArray*, std::uint32_t, std::uint32_t*);
  std::uint32_t QM_FontSpecifier::*in_array;
  std::uint32_t Face::*in_face;
};
inline constexpr NumberAttribute kNumberAttributes[] = {
    {"checksum", true, QM_ATTRIBUTE_CHECKSUM, QM_GetQuillmarkChecksum, &QM_FontSpecifier::checksum,
     &Face::checksum},
    {"legacyChecksum", true, QM_ATTRIBUTE_LEGACY_CHECKSUM, QM_GetLegacyQuillmarkChecksum,
     &QM_FontSpecifier::legacyChecksum, &Face::legacy_checksum},
    {"kerningChecksum", true, QM_ATTRIBUTE_KERNING_CHECKSUM, QM_GetKerningChecksum,
     &QM_FontSpecifier::kerningChecksum, &Face::kerning_checksum},
    {"outlineFileSize", false, QM_ATTRIBUTE_OUTLINE_FILE_SIZE, QM_GetOutlineFileSize,
     &QM_FontSpecifier::outlineFileSize, &Face::outline_file_size},
};

// Every face of an array, asked for through the exported functions. Attributes that the array does not hold
// stay empty.
std::vector<Face> FacesOf(const QM_FontArray* array, const std::string& path,
                          const FaceNeeds& needs = kEveryNeed);

}  // namespace quillmark::tool

#endif
