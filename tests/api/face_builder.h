// Specifiers made by hand, and the exported string getters, writers and readers as calls that check what they
// answer.
#ifndef QUILLMARK_TESTS_API_FACE_BUILDER_H_
#define QUILLMARK_TESTS_API_FACE_BUILDER_H_

#include <gtest/gtest.h>

#include <string>

#include "api/font_array.h"
#include "builders/exported_calls.h"

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

inline QM_FontArray ArrayOf(const QM_FontSpecifier& face) {
  QM_FontArray array;
  array.push_back(face);
  return array;
}

using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);

// The text, or "status N".
inline std::string Ask(TextGetter getter, const QM_FontArray& array, std::uint32_t index = 0) {
  char buffer[2048];
  const std::int32_t status = getter(&array, index, buffer, sizeof(buffer));
  return status == QM_STATUS_OK ? std::string(buffer) : "status " + std::to_string(status);
}

inline std::string Stored(FormWriter write, const QM_FontArray& array, std::int32_t expected_status) {
  std::int32_t status = -1;
  std::string text = Stored(write, &array, &status);
  EXPECT_EQ(status, expected_status);
  return text;
}
inline OwnedArray ReadBack(std::int32_t (*read)(const char*, QM_FontArray**), const std::string& text,
                           std::int32_t expected_status) {
  QM_FontArray* array = nullptr;
  EXPECT_EQ(read(text.c_str(), &array), expected_status) << text.substr(0, 80);
  EXPECT_EQ(array != nullptr, expected_status == 0);
  return OwnedArray(array);
}

}  // namespace quillmark

#endif
