#include "support/wide_string.h"

#include <algorithm>
#include <vector>

#include "platform/core_foundation/cf_ref.h"

namespace quillmark {

std::wstring UTF8ToWide(const OmString& text) {
  const auto string = Adopt(text.GetCFString(kCFStringEncodingUTF8));
  return string ? CFStringToWide(string.get()) : std::wstring();
}

std::size_t WideToUTF8(const std::wstring& text, std::string* out) {
  const auto string = Adopt(CFStringCreateWithWString(kCFAllocatorDefault, text));
  std::string buffer((text.size() + 1) * 4, '\0');
  if (!CFStringGetCString(string.get(), buffer.data(), static_cast<CFIndex>(buffer.size()),
                          kCFStringEncodingUTF8)) {
    return 0;
  }
  out->assign(buffer, 0, buffer.find('\0'));
  return out->size();
}

OmString WideToUTF8(const std::wstring& text) {
  std::string utf8;
  WideToUTF8(text, &utf8);
  return utf8;
}

CFStringRef CFStringCreateWithWString(CFAllocatorRef allocator, const std::wstring& text) {
  std::vector<UniChar> units(text.size());
  std::transform(text.begin(), text.end(), units.begin(), [](wchar_t c) { return static_cast<UniChar>(c); });
  return CFStringCreateWithCharacters(allocator, units.data(), static_cast<CFIndex>(units.size()));
}

std::wstring CFStringToWide(CFStringRef text) {
  const CFIndex length = CFStringGetLength(text);
  std::vector<UniChar> units(static_cast<std::size_t>(length));
  CFStringGetCharacters(text, CFRangeMake(0, length), units.data());
  return {units.begin(), units.end()};
}

std::wstring UniCharBufToWide(const UniChar* text) {
  const UniChar* end = text;
  while (*end != 0) ++end;
  return {text, end};
}

std::wstring DecomposedToPrecomposed(const std::wstring&) { return {}; }

std::wstring PrecomposedToDecomposed(const std::wstring& text) { return DecomposedToPrecomposed(text); }

}  // namespace quillmark
