// The property-list form of an array, written and read: an array of dictionaries in which every value is a
// string, numbers too. Tests: tests/api/property_list_form_test.cc; fuzz/property_list_form_fuzzer.cc.
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "api/buffers.h"
#include "api/font_array.h"
#include "api/stored_values.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/property_list/property_list_format.h"
#include "platform/text/text_encoding.h"
#include "quillmark/quillmark.h"
#include "support/property_list_values.h"

namespace quillmark {
namespace {

// The keys of every dictionary, in the order of their code units, which is that of property-list text.
enum Key : std::size_t {
  kChecksum,
  kFamily,
  kFontKind,
  kFoundry,
  kKerningChecksum,
  kKeywords,  // written empty, never read; so is kPath
  kOutlineFileName,
  kOutlineFileSize,
  kPath,
  kPostScriptName,
  kVersion,
  kKeyCount
};
constexpr std::array<std::string_view, kKeyCount> kKeyNames = {
    "Checksum",        "Family",          "FontKind", "Foundry",        "KerningChecksum", "Keywords",
    "OutlineFileName", "OutlineFileSize", "Path",     "PostScriptName", "Version"};
static_assert(std::is_sorted(kKeyNames.begin(), kKeyNames.end()));

using Strings = std::array<CFRef<CFStringRef>, kKeyCount>;

Strings MakeKeys() {
  Strings keys;
  for (std::size_t i = 0; i < kKeyCount; ++i) {
    keys[i] =
        Adopt(CFStringCreateWithCString(kCFAllocatorDefault, kKeyNames[i].data(), kCFStringEncodingUTF8));
  }
  return keys;
}

// The part of a value that is valid UTF-8: a name may hold any bytes, and the getter may have cut it inside a
// character. One leading byte order mark is dropped, as the platform does.
std::string_view WrittenPart(std::string_view value) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (value.starts_with(kByteOrderMark)) value.remove_prefix(kByteOrderMark.size());
  return ValidUtf8Prefix(value);
}

// Written as text at once and not through objects, so that memory does not grow with the faces.
std::string DictionaryText(const QM_FontArray* array, std::uint32_t face) {
  const std::uint32_t kerning = StoredNumber(QM_GetKerningChecksum, array, face);
  std::array<std::string, kKeyCount> values;
  values[kFontKind] = StoredText(QM_GetKindName, array, face);
  values[kPostScriptName] = StoredText(QM_GetPostScriptName, array, face);
  values[kFoundry] = StoredText(QM_GetFoundryName, array, face);
  values[kFamily] = StoredText(QM_GetFamilyName, array, face);
  values[kVersion] = StoredText(QM_GetVersion, array, face);
  values[kKerningChecksum] = Hexadecimal(kerning);
  // An absent checksum repeats the kerning checksum: hosts compare stored texts.
  values[kChecksum] = Hexadecimal(StoredNumber(QM_GetQuillmarkChecksum, array, face, kerning));
  values[kOutlineFileSize] = SignedDecimal(StoredNumber(QM_GetOutlineFileSize, array, face));
  values[kOutlineFileName] = StoredText(QM_GetPrinterFont, array, face);

  std::string text = "\t<dict>\n";
  for (std::size_t i = 0; i < kKeyCount; ++i) {
    text.append("\t\t<key>").append(kKeyNames[i]).append("</key>\n\t\t<string>");
    cf::AppendEscaped(text, WrittenPart(values[i]));
    text += "</string>\n";
  }
  return text += "\t</dict>\n";
}

// Takes single values out of one dictionary into one specifier.
class DictionaryReader {
 public:
  DictionaryReader(const Strings& keys, CFDictionaryRef dictionary, QM_FontSpecifier& face)
      : keys_(keys), dictionary_(dictionary), face_(face) {}

  void Text(Key key, std::uint32_t attribute, OmString& field) {
    const CFStringRef value = Find(key);
    if (!value) return;
    field = value;
    face_.attributes |= attribute;
  }
  void Number(Key key, int base, std::uint32_t attribute, std::uint32_t& field) {
    const CFStringRef value = Find(key);
    if (!value) return;
    field = ParseLong(OmString(value), base);
    face_.attributes |= attribute;
  }

 private:
  CFStringRef Find(Key key) const {
    return NCFUtils::NCFGetCFStringFromDictionary(dictionary_, keys_[key].get());
  }

  const Strings& keys_;
  CFDictionaryRef dictionary_;
  QM_FontSpecifier& face_;
};

// An element that is no dictionary has no attributes.
QM_FontSpecifier ReadFace(const Strings& keys, CFTypeRef element) {
  QM_FontSpecifier face;
  if (CFGetTypeID(element) == CFDictionaryGetTypeID()) {
    DictionaryReader read(keys, static_cast<CFDictionaryRef>(element), face);
    read.Text(kFontKind, QM_ATTRIBUTE_KIND, face.kind);
    read.Text(kFamily, QM_ATTRIBUTE_FAMILY, face.family);
    read.Text(kPostScriptName, QM_ATTRIBUTE_POSTSCRIPT_NAME, face.postScriptName);
    read.Text(kFoundry, QM_ATTRIBUTE_FOUNDRY, face.foundry);
    read.Text(kVersion, QM_ATTRIBUTE_VERSION, face.version);
    read.Text(kOutlineFileName, QM_ATTRIBUTE_OUTLINE_FILE_NAME, face.outlineFileName);
    read.Number(kKerningChecksum, 16, QM_ATTRIBUTE_KERNING_CHECKSUM, face.kerningChecksum);
    read.Number(kChecksum, 16, QM_ATTRIBUTE_CHECKSUM, face.checksum);
    read.Number(kOutlineFileSize, 10, QM_ATTRIBUTE_OUTLINE_FILE_SIZE, face.outlineFileSize);
  }
  face.style = 0;
  face.firstResourceID = 0;
  face.fondResourceID = 0;
  return face;
}

// Null when the text is no property list or has no array at its top.
CFRef<CFPropertyListRef> ParseArray(const char* text) {
  const std::size_t length = std::strlen(text);
  if (length >= std::numeric_limits<std::int32_t>::max()) return {};
  const auto data =
      Adopt(CFDataCreate(kCFAllocatorDefault, AsBytes({text, length}).data(), static_cast<CFIndex>(length)));
  if (!data) return {};
  CFRef<CFStringRef> error;
  auto list = Adopt(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data.get(), kCFPropertyListImmutable,
                                                    error.Receive()));
  if (!list || CFGetTypeID(list.get()) != CFArrayGetTypeID()) return {};
  return list;
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
  const auto elements = static_cast<CFArrayRef>(list.get());
  const CFIndex count = CFArrayGetCount(elements);
  if (count == 0) return QM_STATUS_FAILED;
  const quillmark::Strings keys = quillmark::MakeKeys();
  auto faces = std::make_unique<QM_FontArray>();
  // Without resource IDs the removal of duplicates keeps the first of each name, so later ones are not kept
  // at all. No hash table, so that no choice of names makes reading slow.
  std::set<std::string> names;
  for (CFIndex i = 0; i < count; ++i) {
    quillmark::QM_FontSpecifier face = quillmark::ReadFace(keys, CFArrayGetValueAtIndex(elements, i));
    if (names.insert(face.postScriptName.str()).second) faces->push_back(std::move(face));
  }
  *outArray = faces.release();
  return QM_STATUS_OK;
}
