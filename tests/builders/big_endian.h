// Big-endian fields in byte strings that tests build and spoil.
#ifndef QUILLMARK_TESTS_BUILDERS_BIG_ENDIAN_H_
#define QUILLMARK_TESTS_BUILDERS_BIG_ENDIAN_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace quillmark::big_endian {

// The low bytes of the value.
inline std::string Field(std::uint64_t value, int size) {
  std::string bytes;
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFFu);
  return bytes;
}
inline std::string U16(std::uint64_t value) { return Field(value, 2); }
inline std::string U32(std::uint64_t value) { return Field(value, 4); }

// Replace a field; an offset outside the bytes throws.
inline void Set16(std::string& bytes, std::size_t offset, std::uint32_t value) {
  bytes.replace(offset, 2, U16(value));
}
inline void Set32(std::string& bytes, std::size_t offset, std::uint32_t value) {
  bytes.replace(offset, 4, U32(value));
}

// The text as UTF-16, as Unicode and Windows name records hold it.
inline std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += U16(unit);
  return bytes;
}

}  // namespace quillmark::big_endian

#endif
