#include "knowledge/table_values.h"

namespace quillmark {

CFRef<CFStringRef> TableKey(const char* ascii) {
  return Adopt(CFStringCreateWithCString(kCFAllocatorDefault, ascii, kCFStringEncodingUTF8));
}

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
