#include "platform/core_foundation/cf_array.h"

#include <cassert>

// Arrays hold objects and retain them; the callbacks that ask for it on the platform are not needed here.
struct CFArrayCallBacks {};
const CFArrayCallBacks kCFTypeArrayCallBacks{};

CFTypeID CFArrayGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kArray); }

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                       const CFArrayCallBacks* /*callbacks*/) {
  return new CFArrayObject;
}

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(array->values.size()); }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  assert(index >= 0 && index < CFArrayGetCount(array));
  return array->values[static_cast<std::size_t>(index)].get();
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
  array->values.push_back(quillmark::Share<CFTypeRef>(value));
}

void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value) {
  assert(index >= 0 && index < CFArrayGetCount(array));
  array->values[static_cast<std::size_t>(index)] = quillmark::Share<CFTypeRef>(value);
}
