// Finds a property-list resource of the library's own bundle and loads it.
// Tests: tests/support/bundle_property_list_test.cc.
#ifndef QUILLMARK_SUPPORT_RESOURCE_LOCATION_H_
#define QUILLMARK_SUPPORT_RESOURCE_LOCATION_H_

#include "platform/core_foundation/cf_ref.h"

namespace quillmark {

// The property list in the bundle's resources folder under `file_name`, parsed with `mutability`
// (CFPropertyListMutabilityOptions); empty when the bundle, the file or a readable list is missing.
CFRef<CFPropertyListRef> LoadBundlePropertyList(const char* file_name, CFOptionFlags mutability);

}  // namespace quillmark

#endif
