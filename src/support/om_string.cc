#include "support/om_string.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/core_foundation/cf_ref.h"
#include "platform/resource_manager/resource_manager.h"
#include "platform/text/ascii_case.h"
#include "support/wide_string.h"

namespace quillmark {

OmString::OmString(const char* text) { SetText(text ? text : ""); }
OmString::OmString(std::string text) { SetText(std::move(text)); }
OmString::OmString(CFStringRef text) { Set(text); }
OmString::OmString(std::uint32_t number) { MakeValueString(number); }
OmString::OmString(std::int32_t number) { MakeValueString(number); }
OmString::OmString(std::int16_t list_id, std::int16_t index) { LoadResource(list_id, index); }

// The wide form is not copied: it is made again when it is needed.
OmString::OmString(const OmString& other) noexcept : text_(other.text_) {}

OmString::OmString(OmString&& other) noexcept
    : text_(std::move(other.text_)), wide_(std::move(other.wide_)) {}

OmString& OmString::operator=(const OmString& other) noexcept {
  if (this == &other) return *this;
  text_ = other.text_;
  wide_.reset();
  TakePascalBytes(other);
  return *this;
}

OmString& OmString::operator=(OmString&& other) noexcept {
  if (this == &other) return *this;
  text_ = std::move(other.text_);
  wide_ = std::move(other.wide_);
  TakePascalBytes(other);
  return *this;
}

// The Pascal buffer's bytes are copied only when both strings have one: its content is written anew whenever
// it is requested.
void OmString::TakePascalBytes(const OmString& other) noexcept {
  if (pascal_ && other.pascal_) std::copy_n(other.pascal_.get(), kPascalBufferSize, pascal_.get());
}

const std::string& OmString::EmptyText() {
  static const auto* const empty = new std::string;  // never destroyed
  return *empty;
}

void OmString::SetText(std::string text) {
  text_ = text.empty() ? nullptr : std::make_shared<const std::string>(std::move(text));
  wide_.reset();
}

OmString& OmString::operator=(CFStringRef text) {
  Set(text);
  return *this;
}

OmString::~OmString() = default;

OmString::operator const wchar_t*() const {
  if (!wide_) wide_ = std::make_unique<const std::wstring>(UTF8ToWide(*this));
  return wide_->c_str();
}

bool OmString::Set(CFStringRef text) {
  if (const char* const direct = text ? CFStringGetCStringPtr(text, kCFStringEncodingUTF8) : nullptr) {
    SetText(direct);
    return true;
  }
  SetText({});
  if (!text) return false;
  std::string buffer(static_cast<std::size_t>(CFStringGetLength(text)) * 4 + 1, '\0');
  if (!CFStringGetCString(text, buffer.data(), static_cast<CFIndex>(buffer.size()), kCFStringEncodingUTF8)) {
    return false;
  }
  SetText(buffer.c_str());  // NOLINT(readability-redundant-string-cstr): ends the text at the NUL
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
  const std::size_t length = std::min<std::size_t>(size(), 255);
  out[0] = static_cast<unsigned char>(length);
  std::copy_n(str().begin(), length, out + 1);
  return out;
}

void OmString::setPStr(const unsigned char* text) { SetText(std::string(text + 1, text + 1 + text[0])); }

void OmString::MakeValueString(std::uint32_t number) { SetText(std::to_string(number)); }
void OmString::MakeValueString(std::int32_t number) { SetText(std::to_string(number)); }

void OmString::LoadResource(std::int16_t list_id, std::int16_t index) {
  Str255 entry = {};
  GetIndString(entry, list_id, index);
  Set(Adopt(CFStringCreateWithPascalString(kCFAllocatorDefault, entry, GetApplicationTextEncoding())).get());
}

int OmString::CompareNoCase(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return static_cast<unsigned char>(ToLowerAscii(c)); };
  const char* left = a.c_str();
  const char* right = b.c_str();
  while (*left != '\0' && lower(*left) == lower(*right)) {
    ++left;
    ++right;
  }
  return lower(*left) - lower(*right);
}

OmString& OmString::MapBytes(char (*map)(char)) {
  std::string text = str();
  std::ranges::transform(text, text.begin(), map);
  SetText(std::move(text));
  return *this;
}

OmString& OmString::ToUpper() { return MapBytes(ToUpperAscii); }
OmString& OmString::ToLower() { return MapBytes(ToLowerAscii); }

bool OmString::TrimWhitespaceFromEnd() {
  const std::size_t length = str().find_last_not_of(" \t") + 1;  // none: npos + 1 is 0
  if (length == size()) return false;
  SetText(str().substr(0, length));
  return true;
}

int OmString::ReplaceAll(OmString* text, const char* find, const char* with) {
  const std::string_view wanted(find);
  if (wanted.empty()) return 0;
  const std::string_view all(text->str());
  std::string replaced;
  std::size_t at = 0;
  int count = 0;
  for (std::size_t found; (found = all.find(wanted, at)) != std::string_view::npos; ++count) {
    replaced.append(all, at, found - at).append(with);
    at = found + wanted.size();
  }
  if (count != 0) text->SetText(std::move(replaced.append(all, at)));
  return count;
}

int OmString::ReplaceAll(OmString* text, char find, char with) {
  std::string replaced = text->str();
  const auto count = std::count(replaced.begin(), replaced.end(), find);
  std::replace(replaced.begin(), replaced.end(), find, with);
  if (count != 0) text->SetText(std::move(replaced));
  return static_cast<int>(count);
}

}  // namespace quillmark
