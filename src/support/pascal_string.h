// Pascal strings: a length byte followed by that many bytes, the form in which resources hold names.
// A limit counts the whole buffer, length byte included. Tests: tests/support/string_test.cc.
#ifndef QUILLMARK_SUPPORT_PASCAL_STRING_H_
#define QUILLMARK_SUPPORT_PASCAL_STRING_H_

#include <cstddef>
#include <cstdint>

namespace quillmark {

// Copies min(limit, src[0] + 1) bytes; returns the length of the copy. A null `src` gives the empty string.
std::int32_t CopyPascalString(const unsigned char* src, unsigned char* dst, std::int32_t limit);
// The same; each copied byte outside 20 to 7E becomes "?".
std::int32_t CopyPascalStringAsciiLimit(const unsigned char* src, unsigned char* dst, std::int32_t limit);
// Appends as much of `src` as `limit` leaves room for. The caller guarantees dst[0] < limit.
void AppendPascalString(unsigned char* dst, const unsigned char* src, std::int32_t limit);
// Copies at most size - 1 bytes of C text and always ends them with a NUL at dst[size - 1]. `size` is not 0.
void strncpyNULLTerminate(char* dst, const char* src, std::size_t size);

}  // namespace quillmark

#endif
