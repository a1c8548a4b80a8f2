// CollectMetaData: reads the kind, platform and names of one face out of its font data. Tests:
// tests/api/creation_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_
#define QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_

#include <cstdint>
#include <optional>
#include <string>

#include "analysis/collect_status.h"
#include "analysis/face_names.h"
#include "analysis/name_record.h"
#include "analysis/printer_font.h"
#include "platform/files/font_file.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

struct CollectedFace {
  FaceNames names;
  OmString kind_name;
  OmString platform;               // "mac" or "crossplatform"
  std::string printer_font_path;   // of PostScript faces only
  std::optional<NameFault> fault;  // why the name table gives no names
};

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
