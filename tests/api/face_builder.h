// Specifiers and arrays made by hand; the exported string getters, writers and readers as calls that give a
// string or an array.
#ifndef QUILLMARK_TESTS_API_FACE_BUILDER_H_
#define QUILLMARK_TESTS_API_FACE_BUILDER_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "api/font_array.h"
#include "quillmark/quillmark.h"

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

// An array as a host holds it.
struct FreeArray {
  void operator()(QM_FontArray* array) const { QM_SpecifierFree(array); }
};
using OwnedArray = std::unique_ptr<QM_FontArray, FreeArray>;

using StringGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
// The text, or "status N".
inline std::string Ask(StringGetter getter, const QM_FontArray& array, std::uint32_t index = 0) {
  char buffer[2048];
  const std::int32_t status = getter(&array, index, buffer, sizeof(buffer));
  return status == QM_STATUS_OK ? std::string(buffer) : "status " + std::to_string(status);
}

// The stored form that `write` gives in a buffer of the size that it asked for.
inline std::string Stored(std::int32_t (*write)(const QM_FontArray*, char*, std::uint32_t*),
                          const QM_FontArray& array, std::int32_t expected_status) {
  std::uint32_t length = 0;
  char none;
  write(&array, &none, &length);
  std::string text(length, '?');
  EXPECT_EQ(write(&array, text.data(), &length), expected_status);
  EXPECT_EQ(length, text.size());
  text.pop_back();
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
