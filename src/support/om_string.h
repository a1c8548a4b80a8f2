// OmString: the library's string. Owned bytes, by convention UTF-8, with wide and Pascal forms made on
// request. Every comparison operator ignores ASCII case; where exact bytes count (keys, sets), compare
// str() instead. Pointers and references handed out live until the string next changes. Copies share their
// text, which never changes itself: one string is for one thread at a time, but two that share may be on two.
// Tests: tests/support/string_test.cc.
#ifndef QUILLMARK_SUPPORT_OM_STRING_H_
#define QUILLMARK_SUPPORT_OM_STRING_H_

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark {

class OmString {
 public:
  OmString() = default;
  OmString(const char* text);  // NOLINT(google-explicit-constructor): bytes as they are, null is empty
  OmString(std::string text);  // NOLINT(google-explicit-constructor): bytes as they are
  OmString(CFStringRef text);  // NOLINT(google-explicit-constructor): as Set
  explicit OmString(std::uint32_t number);
  explicit OmString(std::int32_t number);
  OmString(std::int16_t list_id, std::int16_t index);  // as LoadResource
  OmString(const OmString& other) noexcept;
  OmString(OmString&& other) noexcept;  // leaves the empty string behind
  OmString& operator=(const OmString& other) noexcept;
  OmString& operator=(OmString&& other) noexcept;
  OmString& operator=(CFStringRef text);
  virtual ~OmString();

  // The text itself, and the usual questions about it.
  const std::string& str() const { return text_ ? *text_ : EmptyText(); }
  bool empty() const { return !text_; }
  std::size_t size() const { return str().size(); }
  const char* c_str() const { return str().c_str(); }
  operator const char*() const { return c_str(); }  // NOLINT(google-explicit-constructor)
  operator const wchar_t*() const;                  // NOLINT(google-explicit-constructor)

  // Takes over the string in UTF-8; false, with empty text, for null and for what cannot be converted.
  bool Set(CFStringRef text);
  // The same from C text in `encoding`; false, with the text as it was, when the text is invalid in it.
  bool Set(const char* text, CFStringEncoding encoding);
  // A new platform string from the text read in `encoding`; kCFStringEncodingInvalidId stands for the
  // system's. Null when the text is invalid in it. The caller releases it.
  CFStringRef GetCFString(CFStringEncoding encoding) const;

  // Length byte and at most 255 bytes, possibly cut inside a UTF-8 sequence. `out` holds 256 bytes.
  unsigned char* GetPascalString() const;
  unsigned char* GetPascalString(unsigned char* out) const;
  void setPStr(const unsigned char* text);

  void MakeValueString(std::uint32_t number);
  void MakeValueString(std::int32_t number);
  // Entry `index` (from 1) of the `STR#` resource `list_id` in the thread's chain of open resource files.
  void LoadResource(std::int16_t list_id, std::int16_t index);

  // Case-blind, byte by byte, as strcasecmp.
  bool operator==(const std::string& other) const { return CompareNoCase(other) == 0; }
  bool operator==(const char* other) const { return CompareNoCase(other) == 0; }
  bool operator==(const OmString& other) const { return CompareNoCase(other.str()) == 0; }
  // Gives <, <=, > and >=.
  std::weak_ordering operator<=>(const std::string& other) const { return CompareNoCase(other) <=> 0; }
  std::weak_ordering operator<=>(const char* other) const { return CompareNoCase(other) <=> 0; }
  std::weak_ordering operator<=>(const OmString& other) const { return CompareNoCase(other.str()) <=> 0; }
  int CompareNoCase(const std::string& other) const { return CompareNoCase(str(), other); }
  static int CompareNoCase(const std::string& a, const std::string& b);

  OmString& ToUpper();  // ASCII letters only
  OmString& ToLower();
  bool TrimWhitespaceFromEnd();  // blanks and tabs; true when any were removed

  // Replaces every occurrence from left to right, never looking at what was inserted; returns how many.
  static int ReplaceAll(OmString* text, const char* find, const char* with);
  static int ReplaceAll(OmString* text, char find, char with);

 private:
  static const std::string& EmptyText();
  void SetText(std::string text);
  OmString& MapBytes(char (*map)(char));
  void TakePascalBytes(const OmString& other) noexcept;

  static constexpr std::size_t kPascalBufferSize = 256;

  std::shared_ptr<const std::string> text_;           // null when empty
  mutable std::unique_ptr<const std::wstring> wide_;  // of this text, once requested
  mutable std::unique_ptr<unsigned char[]> pascal_;   // kPascalBufferSize bytes, once requested
};

}  // namespace quillmark

#endif
