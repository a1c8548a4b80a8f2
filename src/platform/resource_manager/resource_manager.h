// The part of the Resource Manager, Memory Manager and File Manager interfaces that the library uses, under
// their own names and with their documented behaviour, over ResourceMap (resource_map.h) and the forks
// of a file (font_file.h). The current resource file, the load switch, the error and the set of open files
// are per thread; a reference number means something only on the thread that opened it. Functions with 1 in
// their names look at the current file alone. Handles that Get calls return belong to their map until
// DetachResource; the map frees them when it closes. Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MANAGER_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MANAGER_H_

#include <cstdint>
#include <memory>

#include "platform/budget.h"
#include "platform/byte_reader.h"
#include "platform/core_foundation/core_foundation.h"
#include "platform/files/font_file.h"
#include "platform/resource_manager/resource_types.h"

// Files.

struct FSRef {
  std::shared_ptr<quillmark::FontFile> file;
};
// fnfErr when nothing exists at `path` or the path is not valid UTF-8. `isDirectory` may be null.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);
// The same for a file that the caller has looked up, which must outlive the reference.
OSStatus FSFileMakeRef(quillmark::FontFile& file, FSRef* ref, Boolean* isDirectory);
// Opens the resource fork; -1 with ResError set when there is none or its map is not well-formed.
ResFileRefNum FSOpenResFile(const FSRef* ref, SInt8 permission);
// With an empty fork name: opens the data fork as a resource map. *refNum is -1 on failure.
OSErr FSOpenResourceFile(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName,
                         SInt8 permission, ResFileRefNum* refNum);
// Closes a file; a changed map is written first, whole or not at all.
void CloseResFile(ResFileRefNum refNum);

// The current file.

void UseResFile(ResFileRefNum refNum);
OSErr ResError();
void SetResLoad(Boolean load);

// Resources.

std::int16_t Count1Types();
void Get1IndType(ResType* type, std::int16_t index);  // from 1
std::int16_t Count1Resources(ResType type);
Handle Get1IndResource(ResType type, std::int16_t index);  // from 1
Handle Get1Resource(ResType type, ResID id);
Handle GetResource(ResType type, ResID id);  // the current file, then those opened before it
void GetResInfo(Handle resource, ResID* id, ResType* type, Str255 name);  // any output may be null
void LoadResource(Handle resource);
void ReleaseResource(Handle resource);  // null is taken and sets resNotFound
void DetachResource(Handle resource);
void RemoveResource(Handle resource);
// Entry `index` (from 1) of the `STR#` resource `listID` along the chain of open files; an empty string
// without one.
void GetIndString(Str255 text, std::int16_t listID, std::int16_t index);

// Memory.

Size GetHandleSize(Handle handle);  // 0 for null or unloaded data
void DisposeHandle(Handle handle);

namespace quillmark {

// The handle's bytes; empty for null or unloaded data. A loaded resource of length 0 has non-null data.
Bytes HandleBytes(Handle handle);
}  // namespace quillmark

#endif
