#include "support/om_string.h"

#include <algorithm>
#include <string_view>

#include "platform/cf_ref.h"
#include "platform/resource_manager.h"
#include "support/wide_string.h"

namespace quillmark {
namespace {

constexpr std::size_t kPascalBufferSize = 256;

// The C locale's case mapping, whatever locale the host has set.
unsigned char LowerAscii(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

OmString::OmString(const char* text) : text_(text ? text : "") {}
OmString::OmString(const std::string& text) : text_(text) {}  // NOLINT(modernize-pass-by-value): as declared
OmString::OmString(CFStringRef text) { Set(text); }
OmString::OmString(std::uint32_t number) { MakeValueString(number); }
OmString::OmString(std::int32_t number) { MakeValueString(number); }
OmString::OmString(std::int16_t list_id, std::int16_t index) { LoadResource(list_id, index); }
OmString::OmString(const OmString& other) : text_(other.text_), wide_(other.wide_) {}

// The Pascal buffer's bytes go over only where both strings have one: it is written again whenever it is
// asked for, so what it holds in between matters to nobody.
OmString& OmString::operator=(const OmString& other) {
  if (this == &other) return *this;
  text_ = other.text_;
  wide_ = other.wide_;
  if (pascal_ && other.pascal_) std::copy_n(other.pascal_.get(), kPascalBufferSize, pascal_.get());
  return *this;
}

OmString& OmString::operator=(CFStringRef text) {
  Set(text);
  return *this;
}

OmString::~OmString() = default;

OmString::operator const wchar_t*() const {
  wide_ = UTF8ToWide(*this);
  return wide_.c_str();
}

bool OmString::Set(CFStringRef text) {
  text_.clear();
  if (!text) return false;
  if (const char* const direct = CFStringGetCStringPtr(text, kCFStringEncodingUTF8)) {
    text_ = direct;
    return true;
  }
  std::string buffer(static_cast<std::size_t>(CFStringGetLength(text)) * 4 + 1, '\0');
  if (!CFStringGetCString(text, buffer.data(), static_cast<CFIndex>(buffer.size()), kCFStringEncodingUTF8)) {
    return false;
  }
  text_.assign(buffer, 0, buffer.find('\0'));
  return true;
}

bool OmString::Set(const char* text, CFStringEncoding encoding) {
  const auto string = Adopt(CFStringCreateWithCString(kCFAllocatorDefault, text, encoding));
  return string && Set(string.get());
}

CFStringRef OmString::GetCFString(CFStringEncoding encoding) const {
  if (encoding == kCFStringEncodingInvalidId) encoding = CFStringGetSystemEncoding();
  return CFStringCreateWithCString(kCFAllocatorDefault, c_str(), encoding);
}

unsigned char* OmString::GetPascalString() const {
  if (!pascal_) pascal_ = std::make_unique<unsigned char[]>(kPascalBufferSize);
  return GetPascalString(pascal_.get());
}

unsigned char* OmString::GetPascalString(unsigned char* out) const {
  const std::size_t length = std::min<std::size_t>(text_.size(), 255);
  out[0] = static_cast<unsigned char>(length);
  std::copy_n(text_.begin(), length, out + 1);
  return out;
}

void OmString::setPStr(const unsigned char* text) { text_.assign(text + 1, text + 1 + text[0]); }

void OmString::MakeValueString(std::uint32_t number) { text_ = std::to_string(number); }
void OmString::MakeValueString(std::int32_t number) { text_ = std::to_string(number); }

void OmString::LoadResource(std::int16_t list_id, std::int16_t index) {
  Str255 entry = {};
  GetIndString(entry, list_id, index);
  Set(Adopt(CFStringCreateWithPascalString(kCFAllocatorDefault, entry, GetApplicationTextEncoding())).get());
}

int OmString::CompareNoCase(const std::string& a, const std::string& b) {
  const char* left = a.c_str();
  const char* right = b.c_str();
  while (*left != '\0' && LowerAscii(*left) == LowerAscii(*right)) {
    ++left;
    ++right;
  }
  return LowerAscii(*left) - LowerAscii(*right);
}

OmString& OmString::ToUpper() {
  std::transform(text_.begin(), text_.end(), text_.begin(), UpperAscii);
  return *this;
}

OmString& OmString::ToLower() {
  std::transform(text_.begin(), text_.end(), text_.begin(),
                 [](char c) { return static_cast<char>(LowerAscii(c)); });
  return *this;
}

bool OmString::TrimWhitespaceFromEnd() {
  const std::size_t length = text_.find_last_not_of(" \t") + 1;  // none: npos + 1 is 0
  if (length == text_.size()) return false;
  text_.resize(length);
  return true;
}

int OmString::ReplaceAll(OmString* text, const char* find, const char* with) {
  const std::string_view wanted(find);
  if (wanted.empty()) return 0;
  const std::string_view rest_of_all(text->text_);
  std::string replaced;
  std::size_t at = 0;
  int count = 0;
  for (std::size_t found; (found = rest_of_all.find(wanted, at)) != std::string_view::npos; ++count) {
    replaced.append(rest_of_all, at, found - at).append(with);
    at = found + wanted.size();
  }
  if (count != 0) text->text_ = replaced.append(rest_of_all, at);
  return count;
}

int OmString::ReplaceAll(OmString* text, char find, char with) {
  const auto count = std::count(text->text_.begin(), text->text_.end(), find);
  std::replace(text->text_.begin(), text->text_.end(), find, with);
  return static_cast<int>(count);
}

}  // namespace quillmark
