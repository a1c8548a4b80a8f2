// Requests through the C interface: every attribute of a file, or its names alone, then the getters of every
// face.
#ifndef QUILLMARK_BENCH_IDENTIFY_FILE_H_
#define QUILLMARK_BENCH_IDENTIFY_FILE_H_

#include <cstdint>
#include <string>

#include "builders/exported_calls.h"

namespace quillmark::bench {

// Faces that came out; 0 when the file was not identified.
inline std::uint32_t IdentifyFile(const std::string& path) {
  const OwnedArray array = Create(path);
  const std::uint32_t count = array ? CountOf(array.get()) : 0;
  for (std::uint32_t face = 0; face < count; ++face) {
    char text[512];
    std::uint32_t number = 0;
    for (const auto get : kTextGetters) (void)get(array.get(), face, text, sizeof text);
    for (const auto get : kNumberGetters) (void)get(array.get(), face, &number);
  }
  return count;
}

// The same for the names, version and kind of each face.
inline std::uint32_t NamesOfFile(const std::string& path) {
  const OwnedArray array =
      Create(path, QM_ATTRIBUTE_POSTSCRIPT_NAME | QM_ATTRIBUTE_FAMILY | QM_ATTRIBUTE_FULL_NAME |
                       QM_ATTRIBUTE_VERSION | QM_ATTRIBUTE_KIND);
  const std::uint32_t count = array ? CountOf(array.get()) : 0;
  for (std::uint32_t face = 0; face < count; ++face) {
    char text[512];
    for (const auto get :
         {QM_GetPostScriptName, QM_GetFamilyName, QM_GetFullName, QM_GetVersion, QM_GetKindName}) {
      (void)get(array.get(), face, text, sizeof text);
    }
  }
  return count;
}

}  // namespace quillmark::bench

#endif
