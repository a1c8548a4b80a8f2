// Why a resource file gives no face: a damaged map, no fonts in it, or a family without anything to read.
// Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_RESOURCE_FAULTS_H_
#define QUILLMARK_TOOL_RESOURCE_FAULTS_H_

#include <optional>
#include <string>

#include "outcome.h"
#include "platform/forks.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark::tool {

// The file's resource map; null inside when neither fork holds a well-formed one.
ResourceFileHolder OpenResources(const std::string& path);

// What is wrong with the resource map in `fork`; nothing when it is well-formed.
std::optional<std::string> MapFault(const Fork& fork);

// Of a file without a FOND and without a POST resource: "a resource file without fonts: ...".
Explanation WhyNoFonts(QuillmarkResourceFile& file);

// Of a file that gave faces: which outlines that its FONDs name cannot be read. Incomplete when there are
// any.
Explanation LostOutlines(QuillmarkResourceFile& file);

// Of a file with FONDs: why none of them gives a face.
Explanation WhyNoFamilyFace(QuillmarkResourceFile& file);

}  // namespace quillmark::tool

#endif
