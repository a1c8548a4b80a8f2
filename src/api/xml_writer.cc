// QM_GetXMLRepresentation: a fixed template, filled by replacing placeholders. Nothing is escaped, since the
// reader undoes no escapes (xml_reader.cc). Tests: tests/api/xml_test.cc; fuzz/xml_fuzzer.cc.
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "api/buffers.h"
#include "api/font_array.h"
#include "api/stored_values.h"
#include "platform/budget.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// The schema's location stands in an attribute of this name, which is what readers of stored texts expect.
constexpr const char kHead[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
constexpr const char kTail[] = "</QuillmarkData>\n";

// One line of a face's block.
struct Value {
  const char* tag;
  const char* placeholder;
  std::string text;
};
using Values = std::array<Value, 9>;

Values ValuesOf(const QM_FontArray* array, std::uint32_t face) {
  return {{
      {"FontKind", "PLACEHOLDER_FONTKIND", StoredText(QM_GetKindName, array, face)},
      {"PostScriptName", "PLACEHOLDER_POSTSCRIPTNAME", StoredText(QM_GetPostScriptName, array, face)},
      {"Foundry", "PLACEHOLDER_FOUNDRY", StoredText(QM_GetFoundryName, array, face)},
      {"Family", "PLACEHOLDER_FAMILY", StoredText(QM_GetFamilyName, array, face)},
      {"Version", "PLACEHOLDER_VERSION", StoredText(QM_GetVersion, array, face)},
      {"Checksum", "PLACEHOLDER_CHECKSUM", Hexadecimal(StoredNumber(QM_GetQuillmarkChecksum, array, face))},
      {"KerningChecksum", "PLACEHOLDER_KERNINGCHECKSUM",
       Hexadecimal(StoredNumber(QM_GetKerningChecksum, array, face))},
      {"OutlineFileSize", "PLACEHOLDER_OUTLINEFILESIZE",
       SignedDecimal(StoredNumber(QM_GetOutlineFileSize, array, face))},
      {"OutlineFileName", "PLACEHOLDER_OUTLINEFILENAME", StoredText(QM_GetPrinterFont, array, face)},
  }};
}

template <typename Content>
std::string Block(const Values& values, Content content) {
  std::string block = "\t<FontData>\n";
  for (const Value& value : values) {
    block.append("\t\t<").append(value.tag).append(">").append(content(value));
    block.append("</").append(value.tag).append(">\n");
  }
  return block += "\t</FontData>\n";
}

// Replaces every occurrence of each placeholder by its value, also inside values that were inserted before.
std::string FillTemplate(const Values& values, Budget& budget) {
  std::string block = Block(values, [](const Value& value) { return std::string_view(value.placeholder); });
  for (const Value& value : values) {
    std::size_t count = 0;
    const std::size_t length = std::strlen(value.placeholder);
    for (std::size_t at = 0; (at = block.find(value.placeholder, at)) != std::string::npos; at += length)
      ++count;
    budget.ChargeBytes(block.size());
    budget.Charge(count * value.text.size() * Budget::kKeptByte);
    OmString filled(std::move(block));
    OmString::ReplaceAll(&filled, value.placeholder, value.text.c_str());
    block = filled.str();
  }
  return block;
}

// Values that contain placeholders can multiply one another. When that spends the budget, the values of the
// face are written without replacement.
std::string FaceBlock(const Values& values, Budget& budget) {
  std::string plain = Block(values, [](const Value& value) { return std::string_view(value.text); });
  budget.Allow(plain.size());
  if (plain.find("PLACEHOLDER_") == std::string::npos) return plain;
  try {
    return FillTemplate(values, budget);
  } catch (const BudgetSpent&) {
    return plain;
  }
}

}  // namespace
}  // namespace quillmark

std::int32_t QM_GetXMLRepresentation(const QM_FontArray* array, char* buffer, std::uint32_t* length) {
  if (!array || !buffer || !length) return QM_STATUS_FAILED;
  quillmark::RepresentationBuffer text(buffer, *length);
  text.Append(quillmark::kHead);
  quillmark::Budget budget;
  for (std::uint32_t face = 0; face < array->size(); ++face) {
    text.Append(quillmark::FaceBlock(quillmark::ValuesOf(array, face), budget));
  }
  text.Append(quillmark::kTail);
  return text.Finish(length, array->size() == 0);
}
