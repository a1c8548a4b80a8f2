// Arrays and dictionaries.
#include <cassert>

#include "platform/core_foundation/cf_object.h"

// Collections retain what they hold, and keys are strings; the callbacks that ask for it on the platform are
// not needed here.
struct CFArrayCallBacks {};
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

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

CFTypeID CFDictionaryGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kDictionary); }

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                                 const CFDictionaryKeyCallBacks* /*key_callbacks*/,
                                                 const CFDictionaryValueCallBacks* /*value_callbacks*/) {
  return new CFDictionaryObject;
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(dictionary->entries.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const auto found = dictionary->entries.find(static_cast<CFStringRef>(key));
  return found == dictionary->entries.end() ? nullptr : found->second.get();
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  dictionary->Set(quillmark::Share(static_cast<CFStringRef>(key)), quillmark::Share<CFTypeRef>(value));
}
