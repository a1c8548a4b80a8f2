// Specifiers and arrays made by hand, and the exported string getters as one call that gives a string.
#ifndef QUILLMARK_TESTS_API_FACE_BUILDER_H_
#define QUILLMARK_TESTS_API_FACE_BUILDER_H_

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

}  // namespace quillmark

#endif
