#include "analysis/face_collector.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>

#include "analysis/font_kind.h"
#include "analysis/name_table.h"
#include "analysis/postscript_metadata.h"
#include "analysis/sfnt_directory.h"
#include "quillmark/quillmark.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr const char* kLayoutTables[] = {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE"};

constexpr bool IsSfntKind(FontKind kind) { return kind <= kKindOpenTypePS; }

bool HasLayoutTable(const SfntData& font) {
  return std::ranges::any_of(kLayoutTables,
                             [&](const char* tag) { return FindSpecifiedTable(font, tag).has_value(); });
}

void RemoveTrailingBlanks(OmString& text) {
  text = text.str().substr(0, text.str().find_last_not_of(' ') + 1);  // none: npos + 1 is 0
}

// Reads what the font itself tells; a display name that is set already is kept.
CollectStatus CollectSfntData(const SfntData& font, std::uint32_t request, CollectedFace& face) {
  auto read = getMetaDataFromNamesTable(font);
  if (const auto* fault = std::get_if<NameFault>(&read)) {
    face.fault = *fault;
    return kNoFontData;
  }
  OmString display_name = std::move(face.names.display_name);
  face.names = std::get<FaceNames>(std::move(read));
  if (!display_name.empty()) face.names.display_name = std::move(display_name);
  RemoveTrailingBlanks(face.names.family);
  if (request & kVariationAxes) face.has_variation_axes = HasVariationAxes(font);
  return kCollected;
}

CollectStatus CollectOutlineData(QuillmarkResourceFile& resources, std::int16_t id, std::uint32_t request,
                                 CollectedFace& face) {
  const ResourceHandle outline(resources.getResourceHandleForType(kSfnt, id));
  if (outline.get() == nullptr) return kNoFontData;
  return CollectSfntData(SfntData(HandleBytes(outline.get()), resources.budget()), request, face);
}

}  // namespace

CollectStatus CollectMetaData(FontFile& file, QuillmarkResourceFile* resources, std::uint32_t request,
                              CollectedFace& face) {
  const auto& data = file.Data();
  FontKind kind = getMetaData_FontType(file.path(), data, resources);
  face.kind_name = KindName(kind);
  face.platform = "mac";
  if (kind == kKindPostScript) kind = kKindTrueType;  // its name stays
  const std::uint64_t size = data ? data->size() : 0;
  if (!IsSfntKind(kind) || size == 0 || size >= std::numeric_limits<std::uint32_t>::max()) return kNoFontData;
  const SfntData font(*data, static_cast<std::uint32_t>(size), file.budget());
  if (kind == kKindTrueType && HasLayoutTable(font)) kind = kKindOpenTypeTT;
  if (kind == kKindOpenTypeTT) face.kind_name = KindName(kKindOpenTypeTT);
  const CollectStatus status = CollectSfntData(font, request, face);
  if (status == kCollected && (request & QM_ATTRIBUTE_PLATFORM) && !GetPlatformTTF(font, &face.platform)) {
    return kPlatformUndecided;
  }
  return status;
}

CollectStatus CollectMetaData(const std::string& path, QuillmarkResourceFile& resources, Family& family,
                              std::int16_t style, std::uint32_t request, PrinterFonts& printer_fonts,
                              CollectedFace& face) {
  face.platform = "mac";  // as for every font in resources
  const std::int16_t id = family.getFirstResourceID(style);
  FontKind kind = kKindUnknown;
  {
    const ResourceHandle outline(resources.getResourceHandleForType(kSfnt, id));
    kind = KindOfStyle(resources, family, HandleBytes(outline.get()));
  }
  if (kind == kKindUnknown) kind = getMetaData_FontType(path, std::nullopt, &resources);
  face.kind_name = KindName(kind);
  if (kind == kKindPostScript) {
    const CollectStatus status = CollectPSMetaData(resources, family, style, request, printer_fonts, face);
    RemoveTrailingBlanks(face.names.family);
    if (status == kCollected || status == kPrinterFontMissing) return status;
    kind = kKindTrueType;  // its name stays
  }
  if (!IsSfntKind(kind)) return kNoFontData;
  if (kind == kKindOpenTypeTT) face.kind_name = KindName(kKindOpenTypeTT);
  return CollectOutlineData(resources, id, request, face);
}

}  // namespace quillmark
