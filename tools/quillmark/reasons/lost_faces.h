// Which of the faces that a file lists it does not give, and why. Tests: tests/cli/why_test.py,
// tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_REASONS_LOST_FACES_H_
#define QUILLMARK_TOOL_REASONS_LOST_FACES_H_

#include "api/creation.h"
#include "reasons/outcome.h"

namespace quillmark::tool {

// Of a collection: "face 3: ...; faces 4, 5: ...". Incomplete when it is for another cause than that they are
// the same as one before.
Explanation LostCollectionFaces(const CreationResult& result);

// Of a resource file that gave faces: which styles have outlines that cannot be read. Incomplete when there
// are any.
Explanation LostStyles(const CreationResult& result);

// Of a resource file with FONDs: why none of them gives a face.
Explanation WhyNoFamilyFace(const CreationResult& result, int fond_count);

}  // namespace quillmark::tool

#endif
