// QM_FontSpecifier: what the library knows about one face, and how two faces compare.
// A plain value. `attributes` says which of the fields count: a getter looks at a field only when its bit is
// set there, whatever the field holds. Tests: tests/api/queries_test.cc.
#ifndef QUILLMARK_API_FONT_SPECIFIER_H_
#define QUILLMARK_API_FONT_SPECIFIER_H_

#include <cstdint>

#include "quillmark/quillmark.h"
#include "support/om_string.h"

namespace quillmark {

struct QM_FontSpecifier {
  OmString kind;
  OmString family;
  OmString postScriptName;  // the key of duplicate removal
  OmString fullName;
  OmString windowsFullName;
  OmString displayName;
  OmString foundry;          // the maker's text as the font has it
  OmString version;          // the version text as the font has it
  OmString outlineFileName;  // path of the printer font file; empty when the font file holds the outlines
  OmString platform;         // "mac" or "crossplatform"
  std::uint32_t kerningChecksum = 0;
  std::uint32_t checksum = 0;
  std::uint32_t legacyChecksum = 0;   // of the earlier scheme
  std::uint32_t outlineFileSize = 0;  // bytes, of the outline file or else of the font file
  // 16-bit values. Without a FOND the IDs are -1, and the style is 0, but -1 for collection faces. All three
  // are 0 in a face that was read from a stored form.
  std::int32_t style = -1;            // classic style code, 0 is plain
  std::int32_t firstResourceID = -1;  // first font resource that the FOND lists for the style
  std::int32_t fondResourceID = -1;
  // Four-character codes, 0 when unknown.
  std::uint32_t fileCreator = 0;
  std::uint32_t fileType = 0;
  std::uint32_t outlineFileCreator = 0;
  std::uint32_t outlineFileType = 0;
  std::uint32_t attributes = 0;  // as they were requested: QM_Attribute bits, kVariationAxes
  bool has_variation_axes = false;

  // Attributes on which both specifiers agree. Strings agree ignoring ASCII case, empty ones too; numbers
  // only when they are not 0. Only attributes that both hold are looked at.
  std::uint32_t MatchingAttributes(const QM_FontSpecifier& other) const;
  // Attributes on which they disagree: both values are there (not empty, not 0) and not the same; case
  // counts. So strings that differ in case alone both match and differ.
  std::uint32_t DifferingAttributes(const QM_FontSpecifier& other) const;
};

// A text that stored forms hold under this name and that comparing looks at.
struct StoredText {
  const char* name;
  std::uint32_t attribute;
  OmString QM_FontSpecifier::*field;
};
inline constexpr StoredText kStoredTexts[] = {
    {"FontKind", QM_ATTRIBUTE_KIND, &QM_FontSpecifier::kind},
    {"Family", QM_ATTRIBUTE_FAMILY, &QM_FontSpecifier::family},
    {"PostScriptName", QM_ATTRIBUTE_POSTSCRIPT_NAME, &QM_FontSpecifier::postScriptName},
    {"Foundry", QM_ATTRIBUTE_FOUNDRY, &QM_FontSpecifier::foundry},
    {"Version", QM_ATTRIBUTE_VERSION, &QM_FontSpecifier::version},
    {"OutlineFileName", QM_ATTRIBUTE_OUTLINE_FILE_NAME, &QM_FontSpecifier::outlineFileName},
};

}  // namespace quillmark

#endif
