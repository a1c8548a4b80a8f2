// Names of PostScript faces, from the clear-text header of their printer font file (Type 1, Multiple Master,
// CID), which lies beside the resource file. Tests: tests/analysis/postscript_metadata_test.cc.
#ifndef QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_
#define QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_

#include <cstdint>
#include <string>

#include "analysis/collect_status.h"
#include "analysis/face_names.h"
#include "analysis/printer_font.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

// What was found for one face; values that were not found are left unchanged.
struct PostScriptFace {
  FaceNames names;
  OmString kind_name;
  std::string printer_font_path;  // empty when the family names none
};

// Reads the POST resources of the face's printer font file, failing that its data fork. kCollected: a header
// was read. `resourceFile` may be null. `request`: QM_Attribute bits.
[[nodiscard]] CollectStatus CollectPSMetaData(QuillmarkResourceFile* resourceFile, Family& family,
                                              std::int16_t style, std::uint32_t request,
                                              PrinterFonts& printer_fonts, PostScriptFace& face);

// The path of the printer font of that name, which lies beside the font file. Empty for an empty name, and
// for one that holds "/": names come from the font and must not lead elsewhere.
std::string PrinterFontPath(const std::string& font_path, const std::string& name);

}  // namespace quillmark

#endif
