// The part of the Resource Manager, Memory Manager and File Manager interfaces that the library uses, under
// their own names and with their documented behaviour, over ResourceMap (resource_map.h) and the forks
// (forks.h). The current resource file, the load switch, the error and the set of open files are per thread;
// a reference number means something only on the thread that opened it. "1" calls look at the current file
// alone. Handles that Get calls return belong to their map until DetachResource; the map frees them when it
// closes. Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/byte_reader.h"
#include "platform/core_foundation.h"

using Handle = char**;  // *handle is the data, null when it is not loaded
using Size = long;
using ResType = std::uint32_t;
using ResID = std::int16_t;
using ResFileRefNum = std::int16_t;
using OSErr = std::int16_t;
using OSStatus = std::int32_t;
using SInt8 = std::int8_t;
using UniCharCount = unsigned long;
using Str255 = unsigned char[256];  // length byte and up to 255 bytes

enum : OSErr {
  noErr = 0,
  ioErr = -36,
  fnfErr = -43,
  permErr = -54,
  memFullErr = -108,
  resNotFound = -192,
  resFNotFound = -193,
  rmvResFailed = -196,
  mapReadErr = -199,
};
enum : SInt8 { fsRdPerm = 1, fsRdWrPerm = 3 };

// Files.

struct FSRef {
  std::string path;  // as given; on Linux a path is the reference
};
// fnfErr when nothing exists at `path` or the path is not valid UTF-8. `isDirectory` may be null.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);
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
Handle NewHandle(Size size);  // zero-filled; null when the memory cannot be had

namespace quillmark {
// The handle's bytes; empty for null or unloaded data. A loaded resource of length 0 has non-null data.
Bytes HandleBytes(Handle handle);

// Where the data of a resource lie. Two resources of one place, however they are called, hold the same bytes.
struct ResourcePlace {
  ResFileRefNum file = 0;
  std::uint64_t start = 0;  // in the fork
  std::uint32_t length = 0;
  auto operator<=>(const ResourcePlace&) const = default;
};
// Nothing for null, for unloaded data and for a handle that is no resource of the thread's current file.
std::optional<ResourcePlace> PlaceOf(Handle resource);
}  // namespace quillmark

#endif
