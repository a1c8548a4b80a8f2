// The calls for objects of any type, and those for the small ones: data and booleans.
#include "platform/core_foundation/cf_object.h"

#include <exception>

#include "platform/byte_reader.h"

using quillmark::AsBytes;
using quillmark::AsText;

namespace {

const quillmark::cf::Object* From(CFTypeRef reference) {
  return static_cast<const quillmark::cf::Object*>(reference);
}

// There from the moment the library is loaded, and never destroyed: a host may call at any time. The first
// reference to each is its own, so that no release destroys it.
constexpr CFBooleanObject kTrue(true);
constexpr CFBooleanObject kFalse(false);

}  // namespace

CFTypeRef CFRetain(CFTypeRef object) {
  From(object)->Retain();
  return object;
}

void CFRelease(CFTypeRef object) { From(object)->Release(); }

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(From(object)->type()); }

constinit const CFBooleanRef kCFBooleanTrue = &kTrue;
constinit const CFBooleanRef kCFBooleanFalse = &kFalse;

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kBoolean); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean->value; }

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
  if (length < 0 || (length > 0 && !bytes)) return nullptr;
  try {
    return new CFDataObject(std::string(AsText({bytes, static_cast<std::size_t>(length)})));
  } catch (const std::exception&) {
    return nullptr;  // too little memory
  }
}

const UInt8* CFDataGetBytePtr(CFDataRef data) { return AsBytes(data->bytes).data(); }

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>(data->bytes.size()); }
