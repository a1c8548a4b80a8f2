// Words faults: of a font, a face or a resource map. No line end, no path in front. Tests:
// tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASONS_FAULT_WORDS_H_
#define QUILLMARK_TOOL_REASONS_FAULT_WORDS_H_

#include <string>

#include "analysis/collection.h"
#include "analysis/name_record.h"
#include "api/face_fault.h"
#include "platform/resource_manager/resource_map.h"

namespace quillmark::tool {

// `whole` is what contains the font, such as "the file".
std::string Words(const NameFault& fault, const std::string& whole);
std::string Words(const MapFault& fault);
std::string Words(const CollectionFault& fault);
std::string Words(const StyleFault& fault);
std::string Words(const DuplicateFault& fault);
// For a file that spent its budget, most of it on `work`.
std::string Words(Work work);
// For a collection that could not be read, or lists no face.
std::string Words(CollectionStatus status);

}  // namespace quillmark::tool

#endif
