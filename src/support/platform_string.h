// Strings made from the bytes of font resources in a stated or the default encoding (MacRoman).
// Tests: tests/support/string_test.cc.
#ifndef QUILLMARK_SUPPORT_PLATFORM_STRING_H_
#define QUILLMARK_SUPPORT_PLATFORM_STRING_H_

#include <cstdint>
#include <optional>
#include <string>

namespace quillmark {

enum NSStringEncoding : unsigned {
  NSASCIIStringEncoding = 1,
  NSUTF8StringEncoding = 4,
  NSShiftJISStringEncoding = 8,
  NSMacOSRomanStringEncoding = 30,
};

// Exactly `length` bytes read in `encoding`, as UTF-8; text ends at a zero byte. Nothing when they are
// invalid in it.
std::optional<std::string> NSStringWithCStringLengthAndEncoding(const char* bytes, unsigned length,
                                                                unsigned encoding);

// Replaces MacRoman text by its UTF-8 form. True: every byte sequence is MacRoman.
bool NVMacRomanToUTF8(std::string& text);
// The same in a buffer of `size` bytes, cut to fit; *outLength (may be null) receives min(length, size - 1).
bool NVMacRomanToUTF8InPlace(char* buffer, std::uint32_t size, std::uint32_t* outLength);

}  // namespace quillmark

#endif
