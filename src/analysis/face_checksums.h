// The checksums that identify the data of one face. Hosts store and compare them: every step is fixed.
// Missing handles, resources and files leave a running CRC as it was; a result of 0 means that nothing was
// read. Tests: tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_
#define QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_

#include <cstdint>
#include <string>

#include "analysis/printer_font.h"
#include "platform/files/font_file.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

struct FaceChecksums {
  std::uint32_t current = 0;
  std::uint32_t legacy = 0;  // of the earlier scheme
};

// Byte sum over the style's part of the FOND's kerning table.
std::uint32_t GetKestineChecksum(Family& family, std::int16_t style);
// Of a style of a family, whose data are resources and printer fonts; where there are none, the whole file
// stands for the face.
FaceChecksums GetOmbreluxChecksum(FontFile& file, QuillmarkResourceFile& resources, Family& family,
                                  std::int16_t style, PrinterFonts& printer_fonts);
// Of the one face of a file without a family. The data fork alone identifies a font of both platforms.
FaceChecksums GetOmbreluxChecksum(FontFile& file, bool want_data_fork_checksum);

}  // namespace quillmark

#endif
