// What a font file's extension says about it. Tests: tests/analysis/font_file_test.cc.
#ifndef QUILLMARK_ANALYSIS_FONT_EXTENSION_H_
#define QUILLMARK_ANALYSIS_FONT_EXTENSION_H_

#include <cstdint>

namespace quillmark {

// An extension alone does not decide the kind of font: see FontKind.
enum FontExtension : std::int16_t {
  kExtensionTtf = 0,
  kExtensionOtf = 1,
  kExtensionPs = 2,
  kExtensionDfont = 3,
  kExtensionTtc = 4,
  kExtensionFot = 5,
  kExtensionFnt = 6,
  kExtensionFon = 7,
  kExtensionPfm = 8,
  kExtensionPfb = 9,
  kExtensionMmm = 10,
  kExtensionInf = 11,
  kExtensionOther = 12,
};

// The case of the extension does not count. kExtensionOther for an empty path, one without an extension, and
// any other.
FontExtension fontTypeFromExtension(const char* path);

}  // namespace quillmark

#endif
