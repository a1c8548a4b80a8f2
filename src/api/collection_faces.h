// The faces of a TrueType Collection, as specifiers.
// Tests: tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#ifndef QUILLMARK_API_COLLECTION_FACES_H_
#define QUILLMARK_API_COLLECTION_FACES_H_

#include <cstdint>
#include <string>

#include "api/font_array.h"

namespace quillmark {

// Appends a specifier for each face that can be cut out, has names and a platform. Of faces that share one
// table directory only the first is appended: they are one font, which the removal of duplicates keeps once.
void AppendCollectionFaces(const std::string& path, std::uint32_t request, QM_FontArray& faces);

}  // namespace quillmark

#endif
