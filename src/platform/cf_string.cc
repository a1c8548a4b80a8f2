#include "platform/cf_string.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/text_encoding.h"

namespace {

std::string_view TextOf(const UInt8* bytes, CFIndex count) {
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)};
}

// Units in the host's order, as memory holds them. A mark at the start of an external representation says
// whether its bytes are swapped, and is not part of the text.
std::optional<std::u16string> UnitsInMemory(std::string_view bytes, bool is_external) {
  if (bytes.size() % sizeof(char16_t) != 0) return std::nullopt;
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(units.data(), bytes.data(), bytes.size());
  if (is_external && !units.empty() && (units[0] == 0xFEFF || units[0] == 0xFFFE)) {
    if (units[0] == 0xFFFE) {
      for (char16_t& unit : units) unit = static_cast<char16_t>(unit / 0x100 + unit % 0x100 * 0x100);
    }
    units.erase(0, 1);
  }
  return units;
}

std::optional<std::u16string> Decode(std::string_view text, CFStringEncoding encoding, bool is_external) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
      return quillmark::Utf8ToUtf16(text);
    case kCFStringEncodingMacRoman:
      return quillmark::MacRomanToUtf16(text);
    case kCFStringEncodingMacJapanese:
      return quillmark::MacJapaneseToUtf16(text);
    case kCFStringEncodingShiftJIS:
      return quillmark::ShiftJisToUtf16(text);
    case kCFStringEncodingUTF16:
      return UnitsInMemory(text, is_external);
    case kCFStringEncodingASCII:
      if (!quillmark::IsAscii(text)) return std::nullopt;
      return std::u16string(text.begin(), text.end());
    default:
      return std::nullopt;
  }
}

std::optional<std::string> Encode(std::u16string_view units, CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
      return quillmark::Utf16ToUtf8(units);
    case kCFStringEncodingMacRoman:
      return quillmark::Utf16ToMacRoman(units);
    case kCFStringEncodingASCII: {
      auto text = quillmark::Utf16ToUtf8(units);
      return text && quillmark::IsAscii(*text) ? text : std::nullopt;
    }
    default:
      return std::nullopt;
  }
}

CFStringRef CreateFromText(std::string_view text, CFStringEncoding encoding, bool is_external) {
  auto units = Decode(text, encoding, is_external);
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
  return text ? CreateFromText(text, encoding, false) : nullptr;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
  return CreateFromText(TextOf(bytes, count), encoding, isExternalRepresentation != 0);
}

CFStringRef CFStringCreateWithPascalString(CFAllocatorRef, const unsigned char* text,
                                           CFStringEncoding encoding) {
  return text ? CreateFromText(TextOf(text + 1, text[0]), encoding, false) : nullptr;
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* units, CFIndex count) {
  return new CFStringObject(std::u16string(units, units + count));
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex) { return new CFStringObject({}); }

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef string) {
  return new CFStringObject(string->units());
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
  string->Assign(string->units() + appended->units());
}

void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding) {
  if (const auto units = Decode(text, encoding, false)) string->Assign(string->units() + *units);
}

void CFStringLowercase(CFMutableStringRef string, [[maybe_unused]] CFLocaleRef locale) {
  assert(locale == nullptr);
  string->Assign(quillmark::LowercaseUtf16(string->units()));
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(string->units().size()); }

UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index) {
  return string->units()[static_cast<std::size_t>(index)];
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const auto units =
      std::u16string_view(string->units())
          .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  std::copy(units.begin(), units.end(), buffer);
}

const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
    case kCFStringEncodingMacRoman:
    case kCFStringEncodingASCII:
      return string->ascii();
    default:
      return nullptr;
  }
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  const auto text = Encode(string->units(), encoding);
  if (!text || bufferSize <= 0 || text->size() >= static_cast<std::size_t>(bufferSize)) return 0;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return 1;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUTF8:
      return length * 3;  // a surrogate pair gives 4 bytes for its 2 units
    case kCFStringEncodingUTF16:
    case kCFStringEncodingShiftJIS:
    case kCFStringEncodingMacJapanese:
      return length * 2;
    default:
      return length;
  }
}

CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b,
                                   [[maybe_unused]] CFStringCompareFlags options) {
  assert(options == 0);
  const int order = a->units().compare(b->units());
  return order < 0 ? kCFCompareLessThan : order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo;
}

CFStringEncoding CFStringGetSystemEncoding() { return kCFStringEncodingMacRoman; }

CFStringEncoding GetApplicationTextEncoding() { return kCFStringEncodingMacRoman; }
