// Explains which faces that a file lists could not be read, and why. Tests: tests/cli/why_test.py,
// tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_REASONS_LOST_FACES_H_
#define QUILLMARK_TOOL_REASONS_LOST_FACES_H_

#include <string>

#include "api/creation.h"
#include "reasons/outcome.h"

namespace quillmark::tool {

// For a collection: "face 3: ...; faces 4, 5: ...". Incomplete when a face was lost for another reason than
// being the same as an earlier one.
Explanation LostCollectionFaces(const CreationResult& result);

// For a resource file that gave faces: which styles have outlines that cannot be read. Incomplete when there
// are any.
Explanation LostStyles(const CreationResult& result);

// For a resource file with FONDs: why none of them gives a face.
Explanation WhyNoFamilyFace(const CreationResult& result);

// For a resource file without a FOND and without a POST resource: "a resource file without fonts: ...".
Explanation WhyNoFonts(const std::string& path, const ListedResources& resources);

}  // namespace quillmark::tool

#endif
