// The faces of every font file that is no collection, as specifiers: those that the FOND resources of either
// fork list, or else the one face of an ordinary TrueType or OpenType file.
// Tests: tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#ifndef QUILLMARK_API_RESOURCE_FONT_FACES_H_
#define QUILLMARK_API_RESOURCE_FONT_FACES_H_

#include <cstdint>

#include "api/font_array.h"

namespace quillmark {

// Appends a specifier for each style of each FOND that the collector reads, in the order of the file, but for
// those that the removal of duplicates is sure to take away.
void AppendResourceFontFaces(const OmString& path, std::uint32_t request, QM_FontArray& faces);

}  // namespace quillmark

#endif
