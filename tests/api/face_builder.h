// Specifiers and families made by hand, and the exported functions as calls that give texts and check what
// they answer.
#ifndef QUILLMARK_TESTS_API_FACE_BUILDER_H_
#define QUILLMARK_TESTS_API_FACE_BUILDER_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/font_array.h"
#include "builders/exported_calls.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"

namespace quillmark {

inline QM_FontSpecifier NamedFace(const char* post_script_name, std::int32_t style = -1,
                                  std::int32_t first_resource_id = -1) {
  QM_FontSpecifier face;
  face.postScriptName = post_script_name;
  face.style = style;
  face.firstResourceID = first_resource_id;
  face.attributes = QM_ATTRIBUTES_ALL;
  return face;
}

// What both stored forms keep, with what each of them has a rule for.
inline QM_FontSpecifier StoredFace() {
  QM_FontSpecifier face = NamedFace("Quill\x01");
  face.kind = "TrueType";
  face.foundry = "unheard of";
  face.family = "Quill <&> Sans";
  face.version = "Version 1.5;x";
  face.outlineFileName = "/a/b";
  face.checksum = 0xABC;
  face.kerningChecksum = 0x1A2B3C4D;
  face.outlineFileSize = 0xFFFFFFFE;
  return face;
}

inline QM_FontArray ArrayOf(const QM_FontSpecifier& face) {
  QM_FontArray array;
  array.push_back(face);
  return array;
}

// The text or number, or "status N".
using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
using NumberGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, std::uint32_t*);

inline std::string Ask(TextGetter getter, const QM_FontArray& array) {
  char buffer[2048];
  const std::int32_t status = getter(&array, 0, buffer, sizeof(buffer));
  return status == QM_STATUS_OK ? buffer : "status " + std::to_string(status);
}
inline std::string Ask(NumberGetter getter, const QM_FontArray& array) {
  std::uint32_t value = 99;
  const std::int32_t status = getter(&array, 0, &value);
  return status == QM_STATUS_OK ? std::to_string(value) : "status " + std::to_string(status);
}

inline std::vector<std::string> Names(const QM_FontArray& array) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < array.size(); ++i) names.push_back(array.view(i).postScriptName.str());
  return names;
}

// A family of outlines from that resource ID on, one a style: "Face-200" and so on. Style 1 is kerned.
inline void AddFamily(ResourceForkBuilder& fork, int id, int styles, std::size_t kerning_pairs) {
  const auto number = [](int value) { return static_cast<std::int16_t>(value); };
  FondBuilder fond(number(id));
  for (int style = 0; style < styles; ++style) {
    fond.Association(0, number(style), number(id + style));
    const SfntBuilder outline = SfntBuilder::CrossPlatform().MacName(4, "Face " + std::to_string(id + style));
    fork.Add(FourCharCode("sfnt"), number(id + style), outline.Build());
  }
  fond.Kerning(1, std::vector<FondBuilder::KerningPair>(kerning_pairs, {1, 2, -3}));
  fork.Add(FourCharCode("FOND"), number(id), fond.Build(), "Quill" + std::to_string(id));
}

inline std::string Stored(FormWriter write, const QM_FontArray& array, std::int32_t expected_status) {
  std::int32_t status = -1;
  std::string text = Stored(write, &array, &status);
  EXPECT_EQ(status, expected_status);
  return text;
}
// Faces of a stored form have no place in a resource file.
inline OwnedArray ReadBack(std::int32_t (*read)(const char*, QM_FontArray**), const std::string& text,
                           std::int32_t expected_status) {
  QM_FontArray* array = nullptr;
  EXPECT_EQ(read(text.c_str(), &array), expected_status) << text.substr(0, 80);
  EXPECT_EQ(array != nullptr, expected_status == 0);
  for (std::size_t i = 0; array != nullptr && i < array->size(); ++i) {
    const QM_FontSpecifier& face = array->view(i);
    EXPECT_EQ(face.style | face.firstResourceID | face.fondResourceID, 0);
  }
  return OwnedArray(array);
}

}  // namespace quillmark

#endif
