// Why a resource file gives no face: a damaged map, or no fonts in it.
// Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASONS_RESOURCE_FAULTS_H_
#define QUILLMARK_TOOL_REASONS_RESOURCE_FAULTS_H_

#include <optional>
#include <string>

#include "platform/files/font_file.h"
#include "platform/resource_manager/resource_map.h"
#include "reasons/outcome.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark::tool {

// Opens the file's resource map; the holder is null when neither fork holds a well-formed one.
ResourceFileHolder OpenResources(const std::string& path);

// Why `fork` is no resource map; nothing when it is one.
std::optional<MapFault> FaultOfMap(const Fork& fork);

// For a file without a FOND and without a POST resource: "a resource file without fonts: ...".
Explanation WhyNoFonts(QuillmarkResourceFile& file);

}  // namespace quillmark::tool

#endif
