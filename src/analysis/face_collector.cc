#include "analysis/face_collector.h"

#include "analysis/font_data.h"
#include "analysis/font_kind.h"
#include "analysis/name_table.h"
#include "analysis/postscript_metadata.h"
#include "analysis/sfnt_directory.h"

namespace quillmark {
namespace {

// The names, platform and kerning checksum of the face's sfnt data.
CollectStatus CollectSfntMetaData(TFontData& font, Handle fond, std::int16_t style,
                                  const FaceOutputs& outputs, OmString& kind_name) {
  static_cast<void>(loadFontDataIntoMemory(font, fond, style));
  if (!font.data) return kNoFontData;
  if (font.fontKind == kKindOpenTypeTT) kind_name = KindName(kKindOpenTypeTT);
  const bool named = getMetaDataFromNamesTable(*font.data, font.resourcePlace, outputs.names);
  CollectStatus result = named ? kCollected : kNoFontData;
  // A font from a resource fork is always the Mac's.
  if (result == kCollected && outputs.platform != nullptr && !font.hasResourceFonts &&
      !GetPlatformTTF(*font.data, outputs.platform)) {
    result = kUndecided;
  }
  if (outputs.kerning_checksum != nullptr) {
    static_cast<void>(GetTrueTypeKerningTableChecksum(*font.data, outputs.kerning_checksum));
  }
  return result;
}

CollectStatus CollectByKind(TFontData& font, QuillmarkResourceFile* resourceFile, const OmString& path,
                            Handle fond, std::int16_t style, const FaceOutputs& outputs,
                            OmString& kind_name) {
  if (font.fontKind == kKindPostScript) {
    FaceOutputs post_script_outputs = outputs;
    post_script_outputs.kind_name = &kind_name;
    const CollectStatus result = CollectPSMetaData(resourceFile, path, fond, style, post_script_outputs);
    if (result == kCollected || result == kPrinterFontMissing) return result;
    font.fontKind = kKindTrueType;  // the name of the kind stays
  }
  return CollectSfntMetaData(font, fond, style, outputs, kind_name);
}

void RemoveTrailingBlanks(OmString& text) {
  const std::string& whole = text.str();
  const std::size_t last = whole.find_last_not_of(' ');
  text = whole.substr(0, last == std::string::npos ? 0 : last + 1);
}

}  // namespace

CollectStatus CollectMetaData(QuillmarkResourceFile* resourceFile, const OmString& path, Handle fond,
                              std::int16_t style, const FaceOutputs& outputs) {
  TFontData font;
  OmString kind_name;
  initializeAndConstructFontInfo(font, resourceFile, path);
  getMetaData_FontType(font, fond, style, &kind_name);
  if (outputs.platform != nullptr) *outputs.platform = "mac";
  const CollectStatus result = CollectByKind(font, resourceFile, path, fond, style, outputs, kind_name);
  if (outputs.names.family_name != nullptr) RemoveTrailingBlanks(*outputs.names.family_name);
  if (outputs.kind_name != nullptr) *outputs.kind_name = kind_name;
  return result;
}

}  // namespace quillmark
