// The types and error codes of the Resource, Memory and File Manager interfaces (resource_manager.h).
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_TYPES_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_TYPES_H_

#include <cstdint>

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
  resNotFound = -192,
  resFNotFound = -193,
  rmvResFailed = -196,
  mapReadErr = -199,
};
enum : SInt8 { fsRdPerm = 1, fsRdWrPerm = 3 };

#endif
