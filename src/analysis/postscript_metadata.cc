#include "analysis/postscript_metadata.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/name_table.h"
#include "analysis/postscript_header.h"
#include "analysis/printer_font.h"
#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

enum class CidKind { kNone, kCid, kOcf };

bool IsMultipleMasterName(std::string_view name) {
  const std::size_t mark = name.find("MM");
  return mark != std::string_view::npos && name.find('_', mark + 2) != std::string_view::npos;
}

// Only families of double-byte scripts are either kind. `name` is the one that is stored.
CidKind CidKindOf(QuillmarkResourceFile& file, Handle fond, std::int16_t style, std::string_view name) {
  if (!file.isDoubleByteFOND(fond)) return CidKind::kNone;
  const auto id = file.FirstOutlineOfStyle(fond, style);
  if (!id) return CidKind::kOcf;
  const ResourceHandle outline(file.getResourceHandleForType(FourCharCode("sfnt"), *id));
  if (outline.get() == nullptr) return CidKind::kOcf;
  const bool is_cid = StartsWith(HandleBytes(outline.get()), "typ1") || IsCidFamilyName(name);
  return is_cid ? CidKind::kCid : CidKind::kNone;
}

// Gathers from the printer font file that the family names.
CollectStatus ReadPrinterFont(QuillmarkResourceFile& family_file, const OmString& path, Handle fond,
                              std::int16_t style, const FaceOutputs& outputs) {
  const std::string name = family_file.getPSPrinterNameForFOND(fond, style);
  // The name comes out of the font: it must not lead out of the font's folder.
  if (name.empty() || name.find('/') != std::string::npos) return kPrinterFontMissing;
  const std::string printer_path = (std::filesystem::path(path.str()).parent_path() / name).string();
  if (outputs.printer_font_path) *outputs.printer_font_path = printer_path;

  return GatherFromPrinterFont(printer_path, outputs);
}

// The family's resource name as a face shows it: %MMyriadMM_400_600_ is MyriadMM.
void GatherDisplayName(QuillmarkResourceFile& file, Handle fond, std::string_view raw_name,
                       bool is_multiple_master, OmString& display_name) {
  std::string name = file.getResourceNameFromFOND(fond).value_or("");
  if (name.empty()) return;
  if (is_multiple_master && raw_name.starts_with("%M")) {
    name.erase(0, 2);
    name = name.substr(0, name.find('_'));
  }
  display_name = name;
}

}  // namespace

CollectStatus CollectPSMetaData(QuillmarkResourceFile* resourceFile, const OmString& path, Handle fond,
                                std::int16_t style, const FaceOutputs& outputs) {
  const CollectStatus status = CollectPSMetaDataMac(resourceFile, path, fond, style, outputs);
  return status == kCollected ? status : CollectPSMetaDataFromFile(path, outputs);
}

CollectStatus CollectPSMetaDataMac(QuillmarkResourceFile* resourceFile, const OmString& path, Handle fond,
                                   std::int16_t style, const FaceOutputs& outputs) {
  if (resourceFile == nullptr || HandleBytes(fond).empty()) return kUndecided;
  const NameOutputs& names = outputs.names;
  // Its marks are tested before any decoding.
  const std::string family = StoredResourceName(fond).value_or("");
  bool is_multiple_master = IsMultipleMasterName(family);
  const CidKind cid_kind =
      is_multiple_master ? CidKind::kNone : CidKindOf(*resourceFile, fond, style, family);

  CollectStatus status = kUndecided;
  if (resourceFile->shouldHavePrinterFile(fond, style)) {
    status = ReadPrinterFont(*resourceFile, path, fond, style, outputs);
    if (names.post_script_name && names.post_script_name->empty()) {
      *names.post_script_name = resourceFile->normalizePostScriptName(
          resourceFile->getPostScriptNameForFOND(fond, style), fond, &is_multiple_master);
    }
  }

  if (names.display_name) {
    GatherDisplayName(*resourceFile, fond, family, is_multiple_master, *names.display_name);
  }
  if (status == kCollected) {
    if (names.family_name && names.family_name->empty()) {
      *names.family_name = std::filesystem::path(resourceFile->file()).filename().string();
    }
    if (names.post_script_name) ReplaceIllegalCharsInPostScriptName(*names.post_script_name);
  }
  if (outputs.kind_name) {
    if (is_multiple_master) {
      *outputs.kind_name = "PostScript - MM";
    } else if (cid_kind != CidKind::kNone) {
      *outputs.kind_name = cid_kind == CidKind::kCid ? "CID" : "OCF";
    }
  }
  return status;
}

CollectStatus CollectPSMetaDataFromFile(const OmString& /*path*/, const FaceOutputs& outputs) {
  if (outputs.printer_font_path == nullptr || outputs.printer_font_path->empty()) return kUndecided;
  return GatherFromDataFork(outputs.printer_font_path->str(), outputs);
}

void Collect_sfnt_MetaDataFromPrinterInfo(QuillmarkResourceFile* resourceFile, Handle fond,
                                          std::int16_t style, const FaceOutputs& outputs) {
  for (const std::int16_t id : getSortedResIDsForStyle(resourceFile, fond, style)) {
    const ResourceHandle outline(getHandleOfTypeAndResID(resourceFile, FourCharCode("sfnt"), id));
    if (HandleBytes(outline.get()).empty()) return;
    GatherMetaDataFromHandle(outline.get(), outputs);
  }
}

}  // namespace quillmark
