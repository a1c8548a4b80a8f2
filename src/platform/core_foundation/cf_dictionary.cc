#include "platform/core_foundation/cf_dictionary.h"

// As for arrays, the callbacks only say what always holds here: keys are strings, and values are retained.
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

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
