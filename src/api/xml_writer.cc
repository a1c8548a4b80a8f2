// QM_GetXMLRepresentation: a fixed template, filled by replacing placeholders. Nothing is escaped, since the
// reader undoes no escapes (xml_reader.cc). Tests: tests/api/xml_test.cc; fuzz/xml_fuzzer.cc.
#include <string>
#include <utility>

#include "api/buffers.h"
#include "api/font_array.h"
#include "api/stored_values.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// The schema's location stands in an attribute of this name, which is what readers of stored texts expect.
constexpr const char kHead[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
constexpr const char kTail[] = "</QuillmarkData>\n";

constexpr const char kFaceBlock[] =
    "\t<FontData>\n"
    "\t\t<FontKind>PLACEHOLDER_FONTKIND</FontKind>\n"
    "\t\t<PostScriptName>PLACEHOLDER_POSTSCRIPTNAME</PostScriptName>\n"
    "\t\t<Foundry>PLACEHOLDER_FOUNDRY</Foundry>\n"
    "\t\t<Family>PLACEHOLDER_FAMILY</Family>\n"
    "\t\t<Version>PLACEHOLDER_VERSION</Version>\n"
    "\t\t<Checksum>PLACEHOLDER_CHECKSUM</Checksum>\n"
    "\t\t<KerningChecksum>PLACEHOLDER_KERNINGCHECKSUM</KerningChecksum>\n"
    "\t\t<OutlineFileSize>PLACEHOLDER_OUTLINEFILESIZE</OutlineFileSize>\n"
    "\t\t<OutlineFileName>PLACEHOLDER_OUTLINEFILENAME</OutlineFileName>\n"
    "\t</FontData>\n";

// Each value goes into the whole block: a placeholder's text inside an earlier value is replaced like any
// other.
std::string FaceBlock(const QM_FontArray* array, std::uint32_t face) {
  const std::pair<const char*, std::string> values[] = {
      {"PLACEHOLDER_FONTKIND", StoredText(QM_GetKindName, array, face)},
      {"PLACEHOLDER_POSTSCRIPTNAME", StoredText(QM_GetPostScriptName, array, face)},
      {"PLACEHOLDER_FOUNDRY", StoredText(QM_GetFoundryName, array, face)},
      {"PLACEHOLDER_FAMILY", StoredText(QM_GetFamilyName, array, face)},
      {"PLACEHOLDER_VERSION", StoredText(QM_GetVersion, array, face)},
      {"PLACEHOLDER_CHECKSUM", Hexadecimal(StoredNumber(QM_GetQuillmarkChecksum, array, face))},
      {"PLACEHOLDER_KERNINGCHECKSUM", Hexadecimal(StoredNumber(QM_GetKerningChecksum, array, face))},
      {"PLACEHOLDER_OUTLINEFILESIZE", SignedDecimal(StoredNumber(QM_GetOutlineFileSize, array, face))},
      {"PLACEHOLDER_OUTLINEFILENAME", StoredText(QM_GetPrinterFont, array, face)},
  };
  OmString block(kFaceBlock);
  for (const auto& [placeholder, value] : values) OmString::ReplaceAll(&block, placeholder, value.c_str());
  return block.str();
}

}  // namespace
}  // namespace quillmark

std::int32_t QM_GetXMLRepresentation(const QM_FontArray* array, char* buffer, std::uint32_t* length) {
  if (!array || !buffer || !length) return QM_STATUS_FAILED;
  quillmark::RepresentationBuffer text(buffer, *length);
  text.Append(quillmark::kHead);
  for (std::uint32_t face = 0; face < array->size(); ++face) text.Append(quillmark::FaceBlock(array, face));
  text.Append(quillmark::kTail);
  return text.Finish(length, array->size() == 0);
}
