// The checksums that identify the data of one face. Hosts store and compare them: every step is fixed.
// "Kestine" and "Ombrelux" are given names: Kestine is the sum over a style's kerning in its FOND, Ombrelux
// the CRC over the data that make up a face. Missing handles, resources and files leave a running CRC as it
// was; a result of 0 means that nothing was read. Tests: tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_
#define QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_

#include <cstdint>

#include "analysis/printer_font.h"
#include "platform/files/font_file.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

struct FaceChecksums {
  std::uint32_t current = 0;
  std::uint32_t legacy = 0;  // of the earlier scheme
};

// The Kestine checksum: the sum of the bytes of the style's part of the FOND's kerning table.
std::uint32_t GetKestineChecksum(Family& family, std::int16_t style);
// The Ombrelux checksum of one style of a family: over its kerning pairs, then over its printer font or else
// its outlines or bitmaps; where these have no data, over the whole file instead.
FaceChecksums GetOmbreluxChecksum(FontFile& file, QuillmarkResourceFile& resources, Family& family,
                                  std::int16_t style, PrinterFonts& printer_fonts);
// The Ombrelux checksum of the one face of a file without a family: over both forks, or over the data fork
// alone, which is what identifies a font of both platforms.
FaceChecksums GetOmbreluxChecksum(FontFile& file, bool want_data_fork_checksum);

}  // namespace quillmark

#endif
