// The input as stored XML: the reader must give what a plain walk over the text gives, and what it gives must
// be written and read again.
#include <string>
#include <vector>

#include "api/font_array.h"
#include "api/stored_values.h"
#include "array_queries.h"

namespace quillmark {
namespace {

constexpr std::size_t kMaxText = 8192;      // the plain walk takes quadratic time
constexpr std::size_t kAllFacesFit = 3500;  // no text of this size can spend the reader's budget

bool Extract(const std::string& text, std::size_t block, const std::string& tag, std::string* value) {
  const std::size_t opening = text.find("<" + tag + ">", block);
  if (opening == std::string::npos) return false;
  const std::size_t start = opening + tag.size() + 2;
  const std::size_t end = text.find("</" + tag + ">", start);
  if (end == std::string::npos) return false;
  *value = text.substr(start, end - start);
  return true;
}

QM_FontSpecifier ReadBlock(const std::string& text, std::size_t block) {
  QM_FontSpecifier face;
  std::string value;
  const auto read = [&](const char* tag, std::uint32_t attribute, OmString& field) {
    if (!Extract(text, block, tag, &value)) return;
    field = value;
    face.attributes |= attribute;
  };
  const auto read_number = [&](const char* tag, int base, std::uint32_t attribute, std::uint32_t& field) {
    if (!Extract(text, block, tag, &value)) return;
    field = ParseLong(value.c_str(), base);
    face.attributes |= attribute;
  };
  read("FontKind", 0x2, face.kind);
  read("Family", 0x1000, face.family);
  read("PostScriptName", 0x1, face.postScriptName);
  read("Foundry", 0x4, face.foundry);
  read("Version", 0x8, face.version);
  read("OutlineFileName", 0x2000, face.outlineFileName);
  read_number("KerningChecksum", 16, 0x10, face.kerningChecksum);
  read_number("Checksum", 16, 0x4000, face.checksum);
  read_number("OutlineFileSize", 10, 0x20, face.outlineFileSize);
  face.style = 0;
  face.firstResourceID = 0;
  face.fondResourceID = 0;
  return face;
}

// False when no block is whole.
bool ReadPlainly(const std::string& text, QM_FontArray& faces) {
  bool any_whole = false;
  std::size_t position = 0;
  while ((position = text.find("<FontData>", position)) != std::string::npos) {
    faces.push_back(ReadBlock(text, position));
    position = text.find("</FontData>", position);
    if (position == std::string::npos) break;
    any_whole = true;
  }
  faces.RemoveDups();
  return any_whole;
}

void ExpectSame(const QM_FontSpecifier& a, const QM_FontSpecifier& b) {
  const auto values = [](const QM_FontSpecifier& face) {
    return std::vector<std::string>{face.kind.str(),
                                    face.family.str(),
                                    face.postScriptName.str(),
                                    face.foundry.str(),
                                    face.version.str(),
                                    face.outlineFileName.str(),
                                    std::to_string(face.kerningChecksum),
                                    std::to_string(face.checksum),
                                    std::to_string(face.outlineFileSize),
                                    std::to_string(face.attributes),
                                    std::to_string(face.style),
                                    std::to_string(face.firstResourceID),
                                    std::to_string(face.fondResourceID)};
  };
  if (values(a) != values(b)) std::abort();
}

void Check(const std::string& text) {
  QM_FontArray expected;
  const bool readable = ReadPlainly(text, expected);
  QM_FontArray* array = nullptr;
  const std::int32_t status = QM_CreateSpecifierFromXML(text.c_str(), &array);
  if (status != (readable ? QM_STATUS_OK : QM_STATUS_OUT_OF_RANGE)) std::abort();
  if (!array) return;
  const bool may_be_cut = text.size() > kAllFacesFit && array->size() < expected.size();
  if (array->size() != expected.size() && !may_be_cut) std::abort();
  for (std::size_t i = 0; i < array->size(); ++i) ExpectSame(array->view(i), expected.view(i));

  AskEverything(array);
  QM_FontArray* again = nullptr;
  if (QM_CreateSpecifierFromXML(Represent(QM_GetXMLRepresentation, array).c_str(), &again) != QM_STATUS_OK) {
    std::abort();
  }
  QM_SpecifierFree(again);
  QM_SpecifierFree(array);
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > quillmark::kMaxText) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  quillmark::Check(text.c_str());  // text ends at its first NUL
  return 0;
}
