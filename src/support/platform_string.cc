#include "support/platform_string.h"

#include <algorithm>
#include <string_view>

#include "platform/text/text_encoding.h"
#include "support/pascal_string.h"

namespace quillmark {

std::optional<std::string> NSStringWithCStringLengthAndEncoding(const char* bytes, unsigned length,
                                                                unsigned encoding) {
  if (!bytes) return std::nullopt;
  std::string_view text(bytes, length);
  text = text.substr(0, text.find('\0'));
  switch (encoding) {
    case NSASCIIStringEncoding:
      return IsAscii(text) ? std::optional(std::string(text)) : std::nullopt;
    case NSUTF8StringEncoding: {
      const auto units = Utf8ToUtf16(text);  // drops a byte order mark
      return units ? Utf16ToUtf8(*units) : std::nullopt;
    }
    case NSShiftJISStringEncoding:
      return ShiftJisToUtf8(text);
    case NSMacOSRomanStringEncoding:
      return MacRomanToUtf8(text);
    default:
      return std::nullopt;
  }
}

bool NVMacRomanToUTF8(std::string& text) {
  text = MacRomanToUtf8(text.c_str());  // C text: it ends at a zero byte
  return true;
}

bool NVMacRomanToUTF8InPlace(char* buffer, std::uint32_t size, std::uint32_t* outLength) {
  if (!buffer || size == 0) return false;
  const std::string utf8 = MacRomanToUtf8(buffer);
  strncpyNULLTerminate(buffer, utf8.c_str(), size);
  if (outLength) *outLength = static_cast<std::uint32_t>(std::min<std::size_t>(utf8.size(), size - 1));
  return true;
}

}  // namespace quillmark
