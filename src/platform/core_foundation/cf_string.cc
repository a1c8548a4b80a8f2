#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/core_foundation/cf_object.h"
#include "platform/text/text_encoding.h"

namespace {

std::optional<std::u16string> Decode(std::string_view text, CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
      return quillmark::Utf8ToUtf16(text);
    case kCFStringEncodingMacRoman:
      return quillmark::MacRomanToUtf16(text);
    case kCFStringEncodingMacJapanese:
      return quillmark::MacJapaneseToUtf16(text);
    case kCFStringEncodingShiftJIS:
      return quillmark::ShiftJisToUtf16(text);
    case kCFStringEncodingASCII:
      if (!quillmark::IsAscii(text)) return std::nullopt;
      return std::u16string(text.begin(), text.end());
    default:
      return std::nullopt;
  }
}

CFStringRef CreateFromText(std::string_view text, CFStringEncoding encoding) {
  auto units = Decode(text, encoding);
  return units ? new CFStringObject(std::move(*units)) : nullptr;
}

}  // namespace

void CFStringObject::Assign(std::u16string text) {
  units_ = std::move(text);
  is_ascii_ =
      std::all_of(units_.begin(), units_.end(), [](char16_t unit) { return unit != 0 && unit < 0x80; });
  ascii_ = is_ascii_ ? std::string(units_.begin(), units_.end()) : std::string();
}

CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kString); }

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
  return text ? CreateFromText(text, encoding) : nullptr;
}

CFStringRef CFStringCreateWithPascalString(CFAllocatorRef, const unsigned char* text,
                                           CFStringEncoding encoding) {
  return text ? CreateFromText(quillmark::AsText({text + 1, text[0]}), encoding) : nullptr;
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* units, CFIndex count) {
  return new CFStringObject(std::u16string(units, units + count));
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef string) {
  return new CFStringObject(string->units());
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
  string->Assign(string->units() + appended->units());
}

void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding) {
  if (const auto units = Decode(text, encoding)) string->Assign(string->units() + *units);
}

void CFStringLowercase(CFMutableStringRef string, [[maybe_unused]] CFLocaleRef locale) {
  assert(locale == nullptr);
  string->Assign(quillmark::LowercaseUtf16(string->units()));
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(string->units().size()); }

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const auto units =
      std::u16string_view(string->units())
          .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  std::copy(units.begin(), units.end(), buffer);
}

const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  const bool holds_ascii = encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingMacRoman ||
                           encoding == kCFStringEncodingASCII;
  return holds_ascii ? string->ascii() : nullptr;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  if (encoding != kCFStringEncodingUTF8) return 0;
  const auto text = quillmark::Utf16ToUtf8(string->units());
  if (!text || bufferSize <= 0 || text->size() >= static_cast<std::size_t>(bufferSize)) return 0;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return 1;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  if (encoding == kCFStringEncodingUTF8) return length * 3;  // a surrogate pair gives 4 bytes for its 2 units
  const bool has_two_bytes =
      encoding == kCFStringEncodingShiftJIS || encoding == kCFStringEncodingMacJapanese;
  return has_two_bytes ? length * 2 : length;
}

CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b,
                                   [[maybe_unused]] CFStringCompareFlags options) {
  assert(options == 0);
  const int order = a->units().compare(b->units());
  return order < 0 ? kCFCompareLessThan : order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo;
}

CFStringEncoding CFStringGetSystemEncoding() { return kCFStringEncodingMacRoman; }

CFStringEncoding GetApplicationTextEncoding() { return kCFStringEncodingMacRoman; }
