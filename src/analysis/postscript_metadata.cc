#include "analysis/postscript_metadata.h"

#include <filesystem>
#include <string_view>

#include "analysis/name_table.h"
#include "quillmark/quillmark.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

enum class CidKind { kNone, kCid, kOcf };

bool IsMultipleMasterName(std::string_view name) {
  const std::size_t mark = name.find("MM");
  return mark != std::string_view::npos && name.find('_', mark + 2) != std::string_view::npos;
}

// Which kind of CID font the style is, if any; only families of double-byte scripts are.
CidKind CidKindOf(QuillmarkResourceFile& file, const Family& family, std::int16_t style) {
  if (!family.isDoubleByteFOND()) return CidKind::kNone;
  const auto id = family.FirstOutlineOfStyle(style);
  if (!id) return CidKind::kOcf;
  const ResourceHandle outline(file.getResourceHandleForType(kSfnt, *id));
  if (outline.get() == nullptr) return CidKind::kOcf;
  const bool is_cid = StartsWith(HandleBytes(outline.get()), "typ1") || IsCidFamilyName(family.stored_name());
  return is_cid ? CidKind::kCid : CidKind::kNone;
}

// Converts to the platform's string and back, which empties text that is not UTF-8.
void PassThroughPlatformString(OmString& text) {
  if (!text.Set(text.c_str(), kCFStringEncodingUTF8)) text = OmString();
}

CollectStatus GatherFromSegments(const PrinterFont& font, std::uint32_t request, CollectedFace& face) {
  if (!font.has_map) return kPrinterFontMissing;
  for (const PostScriptHeader& header : font.segments) {
    GatherPostScriptMetaData(header, request, face.names, face.kind_name);
    for (OmString* text : {&face.names.display_name, &face.names.full_name, &face.names.post_script_name}) {
      PassThroughPlatformString(*text);
    }
  }
  return font.segments.empty() ? kNoPostScriptHeader : kCollected;
}

CollectStatus GatherFromDataFork(const PrinterFont& font, std::uint32_t request, CollectedFace& face) {
  if (!font.data_fork) return kPrinterFontMissing;
  if (*font.data_fork) GatherPostScriptMetaData(**font.data_fork, request, face.names, face.kind_name);
  return kCollected;
}

// The family's resource name as a face shows it: %MMyriadMM_400_600_ is MyriadMM.
void GatherDisplayName(Family& family, bool is_multiple_master, OmString& display_name) {
  std::string name = family.getResourceNameFromFOND().value_or("");
  if (name.empty()) return;
  if (is_multiple_master && family.stored_name().starts_with("%M")) {
    name.erase(0, 2);
    name = name.substr(0, name.find('_'));
  }
  display_name = name;
}

CollectStatus CollectPSMetaDataMac(QuillmarkResourceFile& resourceFile, Family& family, std::int16_t style,
                                   std::uint32_t request, PrinterFonts& printer_fonts, CollectedFace& face) {
  if (!family.has_data()) return kNoPostScriptHeader;
  bool is_multiple_master = IsMultipleMasterName(family.stored_name());
  const CidKind cid_kind = is_multiple_master ? CidKind::kNone : CidKindOf(resourceFile, family, style);

  CollectStatus status = kNoPostScriptHeader;
  if (family.shouldHavePrinterFile(style)) {
    face.printer_font_path = family.PrinterFontPath(style).value_or("");
    status = face.printer_font_path.empty()
                 ? kPrinterFontMissing
                 : GatherFromSegments(printer_fonts.At(face.printer_font_path), request, face);
    if ((request & QM_ATTRIBUTE_POSTSCRIPT_NAME) && face.names.post_script_name.empty()) {
      face.names.post_script_name =
          family.normalizePostScriptName(family.getPostScriptNameForFOND(style), &is_multiple_master);
    }
  }

  GatherDisplayName(family, is_multiple_master, face.names.display_name);
  if (status == kCollected) {
    if (face.names.family.empty()) {
      face.names.family = std::filesystem::path(resourceFile.file()).filename().string();
    }
    ReplaceIllegalCharsInPostScriptName(face.names.post_script_name);
  }
  if (is_multiple_master) {
    face.kind_name = "PostScript - MM";
  } else if (cid_kind != CidKind::kNone) {
    face.kind_name = cid_kind == CidKind::kCid ? "CID" : "OCF";
  }
  return status;
}

}  // namespace

CollectStatus CollectPSMetaData(QuillmarkResourceFile& resourceFile, Family& family, std::int16_t style,
                                std::uint32_t request, PrinterFonts& printer_fonts, CollectedFace& face) {
  const CollectStatus status =
      CollectPSMetaDataMac(resourceFile, family, style, request, printer_fonts, face);
  if (status == kCollected) return status;
  if (face.printer_font_path.empty()) return kNoPostScriptHeader;
  return GatherFromDataFork(printer_fonts.At(face.printer_font_path), request, face);
}

}  // namespace quillmark
