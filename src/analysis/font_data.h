// TFontData: the working record of one analysis of one face, from the path to its sfnt bytes, and the
// decision what kind of font it is. Tests: tests/analysis/font_data_test.cc.
#ifndef QUILLMARK_ANALYSIS_FONT_DATA_H_
#define QUILLMARK_ANALYSIS_FONT_DATA_H_

#include <cstdint>
#include <optional>

#include "analysis/sfnt_data.h"
#include "platform/forks.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

class QuillmarkResourceFile;

// What fontTypeFromExtension answers. Not a kind.
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

enum FontKind : std::int16_t {
  kKindTrueType = 0,
  kKindOpenTypeTT = 1,
  kKindOpenTypePS = 2,
  kKindPostScript = 3,
  kKindPostScriptMM = 4,
  kKindCollection = 5,
  kKindUnknown = 6,
};

struct TFontData {
  char pathBytes[1024] = {};          // the path, cut at 1023 bytes: the form that is opened
  OmString filePath;                  // the path, whole
  std::optional<RegularFile> stream;  // the data fork; none when the fonts live in the resource fork
  FontExtension extensionType = kExtensionOther;
  FontKind fontKind = kKindUnknown;
  std::optional<SfntData> data;  // the sfnt font
  bool hasResourceFonts = false;
  Handle resourceHandle = nullptr;  // detached `sfnt` resource that `data` views, owned
  QuillmarkResourceFile* resourceFile = nullptr;

  TFontData() = default;
  ~TFontData();  // as freeFontInfo
  TFontData(const TFontData&) = delete;
  TFontData& operator=(const TFontData&) = delete;
};

void initializeAndConstructFontInfo(TFontData& font, QuillmarkResourceFile* resourceFile,
                                    const OmString& path);
// Decides `fontKind`; `kindName` (may be null) receives its name, and is left alone for an unknown kind.
void getMetaData_FontType(TFontData& font, Handle fond, std::int16_t style, OmString* kindName);
FontExtension fontTypeFromExtension(const char* path);

// Tests on the first bytes of the data fork, as a 32-bit number in the host's order: on a little-endian
// machine only OTTO, which reads the same both ways, can match a real font. Stored results rely on it.
bool has_ttc_ttcf_Flag(const TFontData& font);
bool has_otf_TrueType_Flag(const TFontData& font);
bool has_otf_OTTO_Flag(const TFontData& font);
// A Windows PFM file by its size field and copyright text, or a resource file whose first `sfnt` is "typ1".
bool hasValidPSHeader(const TFontData& font);

// Gets at the sfnt bytes of kinds 0 to 2; a TrueType font with layout tables becomes kind 1. Always 0.
int loadFontDataIntoMemory(TFontData& font, Handle fond, std::int16_t style);
int loadTTFontData(TFontData& font, Handle fond, std::int16_t style);
void freeFontInfo(TFontData& font);

}  // namespace quillmark

#endif
