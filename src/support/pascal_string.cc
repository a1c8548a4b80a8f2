#include "support/pascal_string.h"

#include <algorithm>
#include <cstring>

namespace quillmark {

std::int32_t CopyPascalString(const unsigned char* src, unsigned char* dst, std::int32_t limit) {
  const std::int32_t length = src ? std::min<std::int32_t>(limit, src[0] + 1) - 1 : 0;
  if (length > 0) std::copy_n(src + 1, length, dst + 1);
  dst[0] = static_cast<unsigned char>(length);
  return length;
}

std::int32_t CopyPascalStringAsciiLimit(const unsigned char* src, unsigned char* dst, std::int32_t limit) {
  const std::int32_t length = CopyPascalString(src, dst, limit);
  if (length > 0) {
    std::replace_if(
        dst + 1, dst + 1 + length, [](unsigned char c) { return c < 0x20 || c > 0x7E; }, '?');
  }
  return length;
}

void AppendPascalString(unsigned char* dst, const unsigned char* src, std::int32_t limit) {
  const std::int32_t room = limit - dst[0] - 1;
  const std::int32_t appended = std::min<std::int32_t>(src[0], room);
  std::copy_n(src + 1, appended, dst + 1 + dst[0]);
  dst[0] = static_cast<unsigned char>(dst[0] + appended);
}

void strncpyNULLTerminate(char* dst, const char* src, std::size_t size) {
  std::strncpy(dst, src, size - 1);
  dst[size - 1] = '\0';
}

}  // namespace quillmark
