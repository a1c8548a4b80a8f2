// The C locale's classes and case mapping of characters, whatever locale the host has set: those of ASCII
// alone.
#ifndef QUILLMARK_PLATFORM_TEXT_ASCII_CASE_H_
#define QUILLMARK_PLATFORM_TEXT_ASCII_CASE_H_

namespace quillmark {

constexpr bool IsUpperAscii(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsLowerAscii(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsDigitAscii(char c) { return c >= '0' && c <= '9'; }
constexpr char ToLowerAscii(char c) { return IsUpperAscii(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char ToUpperAscii(char c) { return IsLowerAscii(c) ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace quillmark

#endif
