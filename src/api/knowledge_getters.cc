// The exported queries that the knowledge tables answer: foundries, classes and styles.
// Tests: tests/api/queries_test.cc; tests/c/contract.c.
#include <algorithm>
#include <vector>

#include "api/buffers.h"
#include "api/font_array.h"
#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"
#include "quillmark/quillmark.h"

using quillmark::CClassificationMappings;
using quillmark::CFoundryNameTable;
using quillmark::CopyOut;
using quillmark::OmFontStyleScan;
using quillmark::OmString;
using quillmark::QM_FontSpecifier;
using quillmark::WithFaceThatHolds;

namespace {

// Creator codes count before the text, unless one of them is a tool's or the system's: then the text is
// asked first.
OmString LegacyFoundryName(const CFoundryNameTable& table, const QM_FontSpecifier& face) {
  OmString result;
  const std::uint32_t creator1 = face.fileCreator;
  const std::uint32_t creator2 = face.outlineFileCreator;
  if (CFoundryNameTable::IsQuestionableCreatorCode(creator1) ||
      CFoundryNameTable::IsQuestionableCreatorCode(creator2)) {
    table.ContainsKnownFoundryName(face.foundry, &result);
  }
  if (result.empty() && !table.IsKnownCreatorCode(creator1, &result) &&
      !table.IsKnownCreatorCode(creator2, &result)) {
    result = table.GetCanonicalFoundryName(creator2, face.foundry);
  }
  return result;
}

}  // namespace

std::int32_t QM_GetFoundryName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                               std::int32_t bufferSize) {
  const auto copy = [&](const QM_FontSpecifier& face) {
    const CFoundryNameTable& table = *CFoundryNameTable::GetSharedFoundryNameTable();
    OmString name("--");
    if (face.platform == "mac") {
      name = LegacyFoundryName(table, face);
    } else {
      table.ContainsKnownFoundryName(face.foundry, &name);
    }
    CopyOut(name.str(), buffer, bufferSize);
  };
  return WithFaceThatHolds(array, index, QM_ATTRIBUTE_FOUNDRY, buffer, copy);
}

std::int32_t QM_GetLegacyFoundryName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                                     std::int32_t bufferSize) {
  const auto copy = [&](const QM_FontSpecifier& face) {
    CopyOut(LegacyFoundryName(*CFoundryNameTable::GetSharedFoundryNameTable(), face).str(), buffer,
            bufferSize);
  };
  return WithFaceThatHolds(array, index, QM_ATTRIBUTE_FOUNDRY, buffer, copy);
}

std::int32_t QM_GetStyles(const char* primaryName, const char* secondaryName, std::uint32_t maxStyles,
                          std::int32_t bufferSize, std::uint32_t* count, char** styleNames) {
  if (!primaryName || !secondaryName || !count || !styleNames || !styleNames[0]) return QM_STATUS_FAILED;
  OmFontStyleScan::Initialize();
  std::vector<quillmark::SBuiltinStyle> styles;
  if (!OmFontStyleScan::ScanFontForBuiltinStyles(primaryName, secondaryName, styles)) return QM_STATUS_OK;
  *count = static_cast<std::uint32_t>(std::min<std::size_t>(maxStyles, styles.size()));
  for (std::uint32_t i = 0; i < *count; ++i) {
    if (styleNames[i]) CopyOut(styles[i].display, styleNames[i], bufferSize);
  }
  return QM_STATUS_OK;
}

std::int32_t QM_GetClassificationFromFamily(const char* family, const char* alternate, char* buffer,
                                            std::int32_t bufferSize) {
  if (!family || !buffer) return QM_STATUS_FAILED;
  const CClassificationMappings& mappings = *CClassificationMappings::GetSharedClassificationMappings();
  OmString result = mappings.GetClassNameFromFontFamily(family);
  if (result == "--" && alternate) result = mappings.GetClassNameFromFontFamily(alternate);
  CopyOut(result.str(), buffer, bufferSize);
  return QM_STATUS_OK;
}
