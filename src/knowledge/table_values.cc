// Typed values and bounded texts out of property lists.
// Tests: through the tables, tests/knowledge/.
#include "knowledge/table_values.h"

namespace quillmark {
namespace {

template <typename Ref>
Ref AsType(CFTypeRef value, CFTypeID type) {
  return value && CFGetTypeID(value) == type ? static_cast<Ref>(value) : nullptr;
}

}  // namespace

CFRef<CFStringRef> TableKey(const char* ascii) {
  return Adopt(CFStringCreateWithCString(kCFAllocatorDefault, ascii, kCFStringEncodingUTF8));
}

CFArrayRef AsArray(CFTypeRef value) { return AsType<CFArrayRef>(value, CFArrayGetTypeID()); }

CFDictionaryRef AsDictionary(CFTypeRef value) {
  return AsType<CFDictionaryRef>(value, CFDictionaryGetTypeID());
}

CFNumberRef AsNumber(CFTypeRef value) { return AsType<CFNumberRef>(value, CFNumberGetTypeID()); }

CFStringRef AsString(CFTypeRef value) { return AsType<CFStringRef>(value, CFStringGetTypeID()); }

std::optional<std::string> Utf8Within(CFStringRef string, std::size_t capacity) {
  if (const char* const ascii = CFStringGetCStringPtr(string, kCFStringEncodingUTF8)) {
    if (static_cast<std::size_t>(CFStringGetLength(string)) >= capacity) return std::nullopt;
    return ascii;
  }
  std::string buffer(capacity, '\0');
  if (!CFStringGetCString(string, buffer.data(), static_cast<CFIndex>(capacity), kCFStringEncodingUTF8)) {
    return std::nullopt;
  }
  return buffer.substr(0, buffer.find('\0'));
}

}  // namespace quillmark
