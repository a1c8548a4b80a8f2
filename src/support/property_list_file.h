// Property-list files: the whole file into memory, parsed; a list written out. Failures give null or false,
// and the stated message on standard output, which for the reading functions has no line end. Nothing but a
// regular file is read, and opening anything else does not block. Tests:
// tests/support/bundle_property_list_test.cc.
#ifndef QUILLMARK_SUPPORT_PROPERTY_LIST_FILE_H_
#define QUILLMARK_SUPPORT_PROPERTY_LIST_FILE_H_

#include <cstdint>
#include <cstdio>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark::NCFUtils {

// The file's bytes; null for a null path, a file that cannot be opened or read, and an empty one.
CFDataRef NCFCreateCFDataRefFromPath(CFStringRef path);
// The list in the file, parsed with `mutability` (CFPropertyListMutabilityOptions), or null.
CFPropertyListRef NCFCreateCFPropertyListFromPath(CFStringRef path, CFOptionFlags mutability);
// The same for a file's bytes; null for null.
CFPropertyListRef ParsePropertyList(CFDataRef data, CFOptionFlags mutability);

// Replaces the file's content. A file that could not be written whole keeps the part that was written.
bool NCFWriteCFDataRefToXMLFile(CFDataRef data, CFStringRef path);
bool NCFWriteCFPropertyListToXMLFile(CFPropertyListRef plist, CFStringRef path);

// Stores the length in bytes (at most FFFFFFFF), leaving the stream at its start. Returns 0, the errno of the
// seek that failed (of the one back, if both did), or -1 for a null stream. The length is 0 unless the end
// was reached.
int GetFileLengthAndRewind(std::FILE* f, std::uint32_t* length);

}  // namespace quillmark::NCFUtils

#endif
