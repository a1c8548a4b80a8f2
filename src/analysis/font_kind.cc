#include "analysis/font_kind.h"

#include <array>
#include <string>

#include "resources/resource_access.h"

namespace quillmark {
namespace {

// The part of a Windows PFM header (Printer Font Metrics) that is looked at.
constexpr std::size_t kPfmHeaderSize = 117;
constexpr std::size_t kPfmSizeOffset = 2;
constexpr std::size_t kPfmCopyrightOffset = 6;
constexpr std::size_t kPfmCopyrightSize = 60;

bool FirstBytesAre(const TFontData& font, std::uint32_t flag) {
  if (FileHasFONDsInResourceFork(font.resourceFile) || !font.stream) return false;
  std::array<std::uint8_t, 4> bytes{};
  if (font.stream->ReadAt(0, bytes) < bytes.size()) return false;
  return HostU32At(bytes, 0) == flag;
}

void Decide(TFontData& font, FontKind kind, OmString* kindName) {
  font.fontKind = kind;
  if (kindName != nullptr) *kindName = KindName(kind);
}

void DecideByResources(TFontData& font, Handle fond, std::int16_t style, OmString* kindName) {
  if (has_ttc_true_Flag(font.resourceFile, fond, style)) {
    Decide(font, kKindTrueType, kindName);
  } else if (has_OTTO_Flag_inResource(font.resourceFile, fond, style)) {
    Decide(font, kKindOpenTypePS, kindName);
  } else if (is_psfont(font.resourceFile)) {
    Decide(font, kKindPostScript, kindName);
  }
}

// Each test that succeeds overrides those before it.
void DecideByFirstBytes(TFontData& font, OmString* kindName) {
  if (hasValidPSHeader(font)) Decide(font, kKindPostScript, kindName);
  // A collection without its extension is treated as a single font.
  if (has_ttc_ttcf_Flag(font)) Decide(font, kKindTrueType, kindName);
  if (has_otf_OTTO_Flag(font)) Decide(font, kKindOpenTypePS, kindName);
}

void DecideByExtension(TFontData& font, OmString* kindName) {
  switch (font.extensionType) {
    case kExtensionTtf:
    case kExtensionDfont:
      return Decide(font, kKindTrueType, kindName);
    case kExtensionOtf:
      return Decide(font, has_otf_OTTO_Flag(font) ? kKindOpenTypePS : kKindOpenTypeTT, kindName);
    case kExtensionPs:
    case kExtensionPfm:
      return Decide(font, kKindPostScript, kindName);
    case kExtensionTtc:
      return Decide(font, kKindCollection, kindName);
    case kExtensionMmm:
      return Decide(font, kKindPostScriptMM, kindName);
    case kExtensionFot:
    case kExtensionFnt:
    case kExtensionFon:
    case kExtensionPfb:
    case kExtensionInf:
      return;  // not fonts that are read by themselves
    case kExtensionOther:
      return DecideByFirstBytes(font, kindName);
  }
}

}  // namespace

const char* KindName(FontKind kind) {
  constexpr const char* kNames[] = {
      "TrueType", "OpenType - TT", "OpenType - PS", "PostScript", "PostScript - MM", "TrueType Collection",
      ""};
  return kNames[kind];
}

void getMetaData_FontType(TFontData& font, Handle fond, std::int16_t style, OmString* kindName) {
  if (font.hasResourceFonts) DecideByResources(font, fond, style, kindName);
  if (font.fontKind != kKindUnknown) return;
  font.extensionType = fontTypeFromExtension(font.pathBytes);
  DecideByExtension(font, kindName);
}

bool has_ttc_ttcf_Flag(const TFontData& font) { return FirstBytesAre(font, FourCharCode("ttcf")); }

bool has_otf_TrueType_Flag(const TFontData& font) { return FirstBytesAre(font, 0x00010000); }

bool has_otf_OTTO_Flag(const TFontData& font) { return FirstBytesAre(font, FourCharCode("OTTO")); }

bool hasValidPSHeader(const TFontData& font) {
  if (hasValidResourcePSHeader(font.resourceFile)) return true;
  if (!font.stream) return false;
  std::array<std::uint8_t, kPfmHeaderSize> header{};
  if (font.stream->ReadAt(0, header) < header.size()) return false;
  if (LittleU32At(header, kPfmSizeOffset) != font.stream->size()) return false;
  OmString notice(std::string(AsText(header).substr(kPfmCopyrightOffset, kPfmCopyrightSize)));
  return notice.ToLower().str().find("copyright") != std::string::npos;
}

}  // namespace quillmark
