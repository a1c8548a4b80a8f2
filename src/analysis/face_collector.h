// CollectMetaData: reads the kind, platform and names of one face out of its font data. Tests:
// tests/api/creation_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_
#define QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_

#include <cstdint>
#include <string>

#include "analysis/collected_face.h"
#include "analysis/printer_font.h"
#include "platform/files/font_file.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

// For the one face of a file without FOND and POST resources, read from its data fork. `request`:
// QM_Attribute bits.
[[nodiscard]] CollectStatus CollectMetaData(FontFile& file, QuillmarkResourceFile* resources,
                                            std::uint32_t request, CollectedFace& face);
// For one style of a family, read from resources and printer fonts.
[[nodiscard]] CollectStatus CollectMetaData(const std::string& path, QuillmarkResourceFile& resources,
                                            Family& family, std::int16_t style, std::uint32_t request,
                                            PrinterFonts& printer_fonts, CollectedFace& face);

}  // namespace quillmark

#endif
