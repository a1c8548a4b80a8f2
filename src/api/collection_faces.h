// The faces of a TrueType Collection, as specifiers.
// Tests: tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#ifndef QUILLMARK_API_COLLECTION_FACES_H_
#define QUILLMARK_API_COLLECTION_FACES_H_

#include <cstdint>
#include <string>

#include "api/font_array.h"

namespace quillmark {

// Appends a specifier for each face that can be cut out, has names and a platform. Of faces that share a
// table directory or a PostScript name only the first is appended, which is the one that the removal of
// duplicates keeps.
void AppendCollectionFaces(const std::string& path, std::uint32_t request, QM_FontArray& faces);

}  // namespace quillmark

#endif
