// Specifiers made by hand, and getters as calls that give texts.
#ifndef QUILLMARK_TESTS_API_FACE_BUILDER_H_
#define QUILLMARK_TESTS_API_FACE_BUILDER_H_

#include <string>

#include "api/font_array.h"
#include "builders/exported_calls.h"

namespace quillmark {

inline QM_FontSpecifier NamedFace(const char* post_script_name) {
  QM_FontSpecifier face;
  face.postScriptName = post_script_name;
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

}  // namespace quillmark

#endif
