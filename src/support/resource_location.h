// Finds a property-list resource of the library's own bundle and loads it.
// Tests: tests/support/bundle_property_list_test.cc.
#ifndef QUILLMARK_SUPPORT_RESOURCE_LOCATION_H_
#define QUILLMARK_SUPPORT_RESOURCE_LOCATION_H_

#include "platform/core_foundation/cf_ref.h"

namespace quillmark {

// The bytes of a file in the bundle's resources folder; empty when the bundle or a readable file is missing.
CFRef<CFDataRef> LoadBundleFile(const char* file_name);

// The same file, parsed as a property list with `mutability` (CFPropertyListMutabilityOptions); empty also
// when it holds none.
CFRef<CFPropertyListRef> LoadBundlePropertyList(const char* file_name, CFOptionFlags mutability);

}  // namespace quillmark

#endif
