// The C locale's case mapping, whatever locale the host has set: ASCII letters alone change.
#ifndef QUILLMARK_PLATFORM_TEXT_ASCII_CASE_H_
#define QUILLMARK_PLATFORM_TEXT_ASCII_CASE_H_

namespace quillmark {

constexpr char ToLowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char ToUpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace quillmark

#endif
