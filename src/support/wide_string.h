// Wide strings: one 32-bit character for each UTF-16 unit; surrogate pairs are not combined. In the library
// only OmString's wide form uses these, by UTF8ToWide; the rest is kept for callers outside it. Tests:
// tests/support/string_test.cc.
#ifndef QUILLMARK_SUPPORT_WIDE_STRING_H_
#define QUILLMARK_SUPPORT_WIDE_STRING_H_

#include <string>

#include "platform/core_foundation/core_foundation.h"
#include "support/om_string.h"

namespace quillmark {

std::wstring UTF8ToWide(const OmString& text);  // invalid UTF-8 gives an empty string
// Each character is cut to one UTF-16 unit. Returns the length in bytes, or 0 with `out` untouched on
// failure.
std::size_t WideToUTF8(const std::wstring& text, std::string* out);
OmString WideToUTF8(const std::wstring& text);
CFStringRef CFStringCreateWithWString(CFAllocatorRef allocator,
                                      const std::wstring& text);  // the caller releases it
std::wstring CFStringToWide(CFStringRef text);
std::wstring UniCharBufToWide(const UniChar* text);  // ends at a zero unit
// Neither form is computed: both return an empty string whatever they are given.
std::wstring DecomposedToPrecomposed(const std::wstring& text);
std::wstring PrecomposedToDecomposed(const std::wstring& text);

}  // namespace quillmark

#endif
