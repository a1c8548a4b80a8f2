// The property-list form of an array, written and read: an array of dictionaries in which every value is a
// string, numbers too. Tests: tests/api/stored_forms_test.cc; fuzz/property_list_form_fuzzer.cc.
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "api/buffers.h"
#include "api/font_array.h"
#include "api/stored_values.h"
#include "knowledge/table_values.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/property_list/property_list_format.h"
#include "platform/text/text_encoding.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// The part of a value that is valid UTF-8: a name may hold any bytes, and the getter may have cut it inside a
// character. One leading byte order mark is dropped, as the platform does.
std::string_view WrittenPart(std::string_view value) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (value.starts_with(kByteOrderMark)) value.remove_prefix(kByteOrderMark.size());
  return ValidUtf8Prefix(value);
}

// Written as text at once and not through objects, so that memory does not grow with the faces.
std::string DictionaryText(const QM_FontArray* array, std::uint32_t face) {
  // In the order of the keys' code units, which is that of property-list text. These two are never read.
  std::map<std::string_view, std::string> values = {{"Keywords", ""}, {"Path", ""}};
  for (StoredValue& value : StoredValues(array, face)) values[value.name] = std::move(value.text);
  // An absent checksum repeats the kerning checksum: hosts compare stored texts.
  if (!(array->view(face).attributes & QM_ATTRIBUTE_CHECKSUM)) values["Checksum"] = values["KerningChecksum"];

  std::string text = "\t<dict>\n";
  for (const auto& [key, value] : values) {
    text.append("\t\t<key>").append(key).append("</key>\n\t\t<string>");
    cf::AppendEscaped(text, WrittenPart(value));
    text += "</string>\n";
  }
  return text += "\t</dict>\n";
}

// Reads faces out of dictionaries, whose keys it makes once for all of them.
class FaceReader {
 public:
  FaceReader() {
    for (const StoredText& text : kStoredTexts) texts_.emplace_back(TableKey(text.name), &text);
    for (const StoredNumber& number : kStoredNumbers) numbers_.emplace_back(TableKey(number.name), &number);
  }

  // An element that is no dictionary has no attributes.
  QM_FontSpecifier Read(CFTypeRef element) const {
    QM_FontSpecifier face = NewStoredFace();
    const CFDictionaryRef dictionary = AsDictionary(element);
    for (const auto& [key, text] : texts_) {
      const CFStringRef value = NCFUtils::NCFGetCFStringFromDictionary(dictionary, key.get());
      if (!value) continue;
      face.*text->field = value;
      face.attributes |= text->attribute;
    }
    for (const auto& [key, number] : numbers_) {
      const CFStringRef value = NCFUtils::NCFGetCFStringFromDictionary(dictionary, key.get());
      if (!value) continue;
      face.*number->field = ParseLong(OmString(value), number->base);
      face.attributes |= number->attribute;
    }
    return face;
  }

 private:
  std::vector<std::pair<CFRef<CFStringRef>, const StoredText*>> texts_;
  std::vector<std::pair<CFRef<CFStringRef>, const StoredNumber*>> numbers_;
};

// Null when the text is no property list or has no array at its top.
CFRef<CFArrayRef> ParseArray(const char* text) {
  const std::size_t length = std::strlen(text);
  if (length >= std::numeric_limits<std::int32_t>::max()) return {};
  const auto data =
      Adopt(CFDataCreate(kCFAllocatorDefault, AsBytes({text, length}).data(), static_cast<CFIndex>(length)));
  if (!data) return {};
  CFRef<CFStringRef> error;
  const auto list = Adopt(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data.get(),
                                                          kCFPropertyListImmutable, error.Receive()));
  return Share(AsArray(list.get()));
}

}  // namespace
}  // namespace quillmark

std::int32_t QM_GetPropertyListRepresentation(const QM_FontArray* array, char* buffer,
                                              std::uint32_t* length) {
  if (!array || !buffer || !length) return QM_STATUS_FAILED;
  quillmark::RepresentationBuffer text(buffer, *length);
  text.Append(quillmark::cf::kTextHead);
  text.Append(array->size() == 0 ? "<array/>\n" : "<array>\n");
  for (std::uint32_t face = 0; face < array->size(); ++face) {
    text.Append(quillmark::DictionaryText(array, face));
  }
  if (array->size() != 0) text.Append("</array>\n");
  text.Append(quillmark::cf::kTextTail);
  return text.Finish(length, array->size() == 0);
}

std::int32_t QM_CreateSpecifierFromPropertyList(const char* text, QM_FontArray** outArray) {
  if (!text || !outArray) return QM_STATUS_FAILED;
  const auto list = quillmark::ParseArray(text);
  if (!list) return QM_STATUS_FAILED;
  const CFIndex count = CFArrayGetCount(list.get());
  if (count == 0) return QM_STATUS_FAILED;
  const quillmark::FaceReader reader;
  auto faces = std::make_unique<QM_FontArray>();
  quillmark::NamesSeen names;
  for (CFIndex i = 0; i < count; ++i) {
    quillmark::QM_FontSpecifier face = reader.Read(CFArrayGetValueAtIndex(list.get(), i));
    const bool is_first = names.FirstFace(face.postScriptName.str(), faces->size()) == faces->size();
    if (is_first) faces->push_back(std::move(face));
  }
  *outArray = faces.release();
  return QM_STATUS_OK;
}
