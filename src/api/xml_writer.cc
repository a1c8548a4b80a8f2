// QM_GetXMLRepresentation: a fixed template, filled by replacing placeholders. Nothing is escaped, since the
// reader undoes no escapes (xml_reader.cc). Tests: tests/api/stored_forms_test.cc; fuzz/xml_fuzzer.cc.
#include <array>
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

// xmlns:xsi holds the schema's location, which is not what it is for, but stored texts have it.
constexpr const char kHead[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
constexpr const char kTail[] = "</QuillmarkData>\n";

using Values = std::array<StoredValue, 9>;

// What stands for a value in the template: PLACEHOLDER_FONTKIND.
std::string PlaceholderOf(const StoredValue& value) {
  return "PLACEHOLDER_" + OmString(value.name).ToUpper().str();
}

template <typename Content>
std::string Block(const Values& values, Content content) {
  std::string block = "\t<FontData>\n";
  for (const StoredValue& value : values) {
    block.append("\t\t<").append(value.name).append(">").append(content(value));
    block.append("</").append(value.name).append(">\n");
  }
  return block += "\t</FontData>\n";
}

// Replaces every occurrence of each placeholder by its value, also inside values that were inserted before.
std::string FillTemplate(const Values& values, Budget& budget) {
  std::string block = Block(values, PlaceholderOf);
  for (const StoredValue& value : values) {
    const std::string placeholder = PlaceholderOf(value);
    std::size_t count = 0;
    for (std::size_t at = 0; (at = block.find(placeholder, at)) != std::string::npos;
         at += placeholder.size()) {
      ++count;
    }
    budget.ChargeBytes(block.size());
    budget.Charge(count * value.text.size() * Budget::kKeptByte);
    OmString filled(std::move(block));
    OmString::ReplaceAll(&filled, placeholder.c_str(), value.text.c_str());
    block = filled.str();
  }
  return block;
}

// Values that contain placeholders can multiply one another. When that spends the budget, the values of the
// face are written without replacement.
std::string FaceBlock(const Values& values, Budget& budget) {
  std::string plain = Block(values, [](const StoredValue& value) { return std::string_view(value.text); });
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
    text.Append(quillmark::FaceBlock(quillmark::StoredValues(array, face), budget));
  }
  text.Append(quillmark::kTail);
  return text.Finish(length, array->size() == 0);
}
