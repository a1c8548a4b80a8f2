// TFontData: the working record of one analysis of one face, from the path to its sfnt bytes. It lives for
// one call of CollectMetaData; the resource file belongs to the caller. What kind of font it is, font_kind.h
// decides. Tests: tests/analysis/font_data_test.cc.
#ifndef QUILLMARK_ANALYSIS_FONT_DATA_H_
#define QUILLMARK_ANALYSIS_FONT_DATA_H_

#include <cstdint>
#include <optional>

#include "analysis/font_extension.h"
#include "analysis/sfnt_data.h"
#include "platform/forks.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

class QuillmarkResourceFile;

// Not what fontTypeFromExtension answers.
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
  std::optional<SfntData> data;                   // the sfnt font, none when there is none to be had
  bool hasResourceFonts = false;                  // the resource file holds FOND or POST resources
  Handle resourceHandle = nullptr;                // detached `sfnt` resource that `data` views, owned
  std::optional<ResourcePlace> resourcePlace;     // where it lay
  QuillmarkResourceFile* resourceFile = nullptr;  // null unless hasResourceFonts

  TFontData() = default;
  ~TFontData();  // as freeFontInfo
  TFontData(const TFontData&) = delete;
  TFontData& operator=(const TFontData&) = delete;
};

// Starts the record afresh. The data fork is opened unless the resource file holds fonts.
void initializeAndConstructFontInfo(TFontData& font, QuillmarkResourceFile* resourceFile,
                                    const OmString& path);
// Gets at the sfnt bytes of kinds 0 to 2; a TrueType font with layout tables becomes kind 1. Always 0.
int loadFontDataIntoMemory(TFontData& font, Handle fond, std::int16_t style);
int loadTTFontData(TFontData& font, Handle fond, std::int16_t style);
// Lets go of everything but the path.
void freeFontInfo(TFontData& font);

}  // namespace quillmark

#endif
