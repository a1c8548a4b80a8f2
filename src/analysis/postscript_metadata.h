// Names of PostScript faces, from the clear-text header of their printer font file (Type 1, Multiple Master,
// CID), which lies beside the resource file. Tests: tests/analysis/postscript_test.cc.
#ifndef QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_
#define QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_

#include <cstdint>

#include "analysis/collected_face.h"
#include "analysis/printer_font.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

// Reads the POST resources of the face's printer font file, failing that its data fork. kCollected: a header
// was read; values that were not found are left unchanged. `request`: QM_Attribute bits.
[[nodiscard]] CollectStatus CollectPSMetaData(QuillmarkResourceFile& resourceFile, Family& family,
                                              std::int16_t style, std::uint32_t request,
                                              PrinterFonts& printer_fonts, CollectedFace& face);

}  // namespace quillmark

#endif
