#include "analysis/font_kind.h"

#include <array>

#include "analysis/font_extension.h"
#include "resources/resource_access.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

// The part of a Windows PFM header (Printer Font Metrics) that is looked at.
constexpr std::size_t kPfmHeaderSize = 117;
constexpr std::size_t kPfmSizeOffset = 2;
constexpr std::size_t kPfmCopyrightOffset = 6;
constexpr std::size_t kPfmCopyrightSize = 60;

bool FirstBytesAre(const std::optional<RegularFile>& data, std::uint32_t flag) {
  if (!data) return false;
  std::array<std::uint8_t, 4> bytes{};
  if (data->ReadAt(0, bytes) < bytes.size()) return false;
  return HostU32At(bytes, 0) == flag;
}

// The first test that succeeds decides.
FontKind KindOfFirstBytes(const std::optional<RegularFile>& data, QuillmarkResourceFile* resources) {
  if (has_otf_OTTO_Flag(data)) return kKindOpenTypePS;
  // Big-endian hosts only: see font_kind.h. A collection without its extension counts as a single font.
  if (has_ttc_ttcf_Flag(data)) return kKindTrueType;
  return hasValidPSHeader(data, resources) ? kKindPostScript : kKindUnknown;
}

}  // namespace

const char* KindName(FontKind kind) {
  constexpr const char* kNames[] = {
      "TrueType", "OpenType - TT", "OpenType - PS", "PostScript", "PostScript - MM", "TrueType Collection",
      ""};
  return kNames[kind];
}

FontKind getMetaData_FontType(const std::string& path, const std::optional<RegularFile>& data,
                              QuillmarkResourceFile* resources) {
  switch (fontTypeFromExtension(path.substr(0, kLongestFontPath).c_str())) {
    case kExtensionTtf:
    case kExtensionDfont:
      return kKindTrueType;
    case kExtensionOtf:
      return has_otf_OTTO_Flag(data) ? kKindOpenTypePS : kKindOpenTypeTT;
    case kExtensionPs:
    case kExtensionPfm:
      return kKindPostScript;
    case kExtensionTtc:
      return kKindCollection;
    case kExtensionMmm:
      return kKindPostScriptMM;
    case kExtensionFot:
    case kExtensionFnt:
    case kExtensionFon:
    case kExtensionPfb:
    case kExtensionInf:
      return kKindUnknown;  // these files are not read as fonts by themselves
    case kExtensionOther:
      return KindOfFirstBytes(data, resources);
  }
  return kKindUnknown;
}

FontKind KindOfStyle(QuillmarkResourceFile& resources, const Family& family, Bytes outline) {
  if (has_ttc_true_Flag(outline, family.stored_name())) return kKindTrueType;
  if (has_OTTO_Flag_inResource(outline)) return kKindOpenTypePS;
  return is_psfont(&resources) ? kKindPostScript : kKindUnknown;
}

bool has_ttc_ttcf_Flag(const std::optional<RegularFile>& data) {
  return FirstBytesAre(data, FourCharCode("ttcf"));
}

bool has_otf_TrueType_Flag(const std::optional<RegularFile>& data) { return FirstBytesAre(data, 0x00010000); }

bool has_otf_OTTO_Flag(const std::optional<RegularFile>& data) {
  return FirstBytesAre(data, FourCharCode("OTTO"));
}

bool hasValidPSHeader(const std::optional<RegularFile>& data, QuillmarkResourceFile* resources) {
  if (hasValidResourcePSHeader(resources)) return true;
  if (!data) return false;
  std::array<std::uint8_t, kPfmHeaderSize> header{};
  if (data->ReadAt(0, header) < header.size()) return false;
  if (LittleU32At(header, kPfmSizeOffset) != data->size()) return false;
  OmString notice(std::string(AsText(header).substr(kPfmCopyrightOffset, kPfmCopyrightSize)));
  return notice.ToLower().str().find("copyright") != std::string::npos;
}

}  // namespace quillmark
