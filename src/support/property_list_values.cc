#include "support/property_list_values.h"

#include <cstdlib>

#include "platform/core_foundation/cf_ref.h"

namespace quillmark::NCFUtils {
namespace {

bool HasType(CFTypeRef value, CFTypeID type) { return value && CFGetTypeID(value) == type; }

template <typename Ref>
Ref ValueOfType(CFDictionaryRef dict, CFStringRef key, CFTypeID type) {
  const void* value = nullptr;
  GetCFTypeFromDict(dict, key, type, value);
  return static_cast<Ref>(value);
}

CFRef<CFTypeRef> Number(CFNumberType type, const void* number) {
  return Adopt<CFTypeRef>(CFNumberCreate(kCFAllocatorDefault, type, number));
}

CFRef<CFTypeRef> Bool(bool value) { return Share<CFTypeRef>(value ? kCFBooleanTrue : kCFBooleanFalse); }

CFRef<CFTypeRef> Text(const char* text, CFStringEncoding encoding) {
  return Adopt<CFTypeRef>(text ? CFStringCreateWithCString(kCFAllocatorDefault, text, encoding) : nullptr);
}

bool Put(CFMutableDictionaryRef dict, CFStringRef key, const CFRef<CFTypeRef>& value) {
  if (!dict || !key || !value) return false;
  CFDictionarySetValue(dict, key, value.get());
  return true;
}

bool Append(CFMutableArrayRef array, const CFRef<CFTypeRef>& value) {
  if (!array || !value) return false;
  CFArrayAppendValue(array, value.get());
  return true;
}

}  // namespace

bool GetCFTypeFromDict(CFDictionaryRef dict, CFStringRef key, CFTypeID typeID, const void*& out) {
  const void* const value = dict && key ? CFDictionaryGetValue(dict, key) : nullptr;
  if (!HasType(value, typeID)) return false;
  out = value;
  return true;
}

CFStringRef GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key) {
  return ValueOfType<CFStringRef>(dict, key, CFStringGetTypeID());
}

CFArrayRef GetCFArrayFromDict(CFDictionaryRef dict, CFStringRef key) {
  return ValueOfType<CFArrayRef>(dict, key, CFArrayGetTypeID());
}

CFNumberRef GetCFNumberFromDict(CFDictionaryRef dict, CFStringRef key) {
  return ValueOfType<CFNumberRef>(dict, key, CFNumberGetTypeID());
}

CFBooleanRef GetCFBooleanFromDict(CFDictionaryRef dict, CFStringRef key) {
  return ValueOfType<CFBooleanRef>(dict, key, CFBooleanGetTypeID());
}

CFStringRef NCFGetCFStringFromDictionary(CFDictionaryRef dict, CFStringRef key) {
  return GetCFStringFromDict(dict, key);
}

bool GetNumberFromCFValue(CFTypeRef value, CFNumberType type, void* out) {
  if (!HasType(value, CFNumberGetTypeID()) || !out) return false;
  return CFNumberGetValue(static_cast<CFNumberRef>(value), type, out);
}

bool GetBoolFromCFValue(CFTypeRef value, bool& out) {
  if (!HasType(value, CFBooleanGetTypeID())) return false;
  out = CFBooleanGetValue(static_cast<CFBooleanRef>(value));
  return true;
}

bool GetBoolFromDict(CFDictionaryRef dict, CFStringRef key, bool& out) {
  return GetBoolFromCFValue(GetCFBooleanFromDict(dict, key), out);
}

bool GetStringFromCFValue(CFTypeRef value, UniChar*& out) {
  if (!HasType(value, CFStringGetTypeID())) return false;
  const auto string = static_cast<CFStringRef>(value);
  const CFIndex length = CFStringGetLength(string);
  auto* const units =
      static_cast<UniChar*>(std::malloc((static_cast<std::size_t>(length) + 1) * sizeof(UniChar)));
  if (!units) return false;
  CFStringGetCharacters(string, CFRangeMake(0, length), units);
  units[length] = 0;
  out = units;
  return true;
}

std::int32_t NCFGetUniStringFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                           std::int32_t capacity) {
  const CFStringRef string = GetCFStringFromDict(dict, key);
  if (!string) return 0;
  const CFIndex length = CFStringGetLength(string);
  if (length > capacity) return static_cast<std::int32_t>(-length);
  CFStringGetCharacters(string, CFRangeMake(0, length), buf);
  return static_cast<std::int32_t>(length);
}

std::int32_t NCFGetUniStringNullTermFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                                   std::int32_t capacity) {
  const std::int32_t length = NCFGetUniStringFromDictionary(dict, key, buf, capacity);
  if (length >= 1 && length < capacity) buf[length] = 0;
  return length;
}

bool PutCStringIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text) {
  return Put(dict, key, Text(text, kCFStringEncodingUTF8));
}

bool PutNullTermCharPtrIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text,
                                CFStringEncoding encoding) {
  return Put(dict, key, Text(text, encoding));
}

bool PutNumberIntoDict(CFMutableDictionaryRef dict, CFStringRef key, CFNumberType type, const void* number) {
  return Put(dict, key, Number(type, number));
}

bool PutBoolIntoDict(CFMutableDictionaryRef dict, CFStringRef key, bool value) {
  return Put(dict, key, Bool(value));
}

bool AppendCStringOntoArray(CFMutableArrayRef array, const char* text) {
  return Append(array, Text(text, kCFStringEncodingUTF8));
}

bool AppendNumberOntoArray(CFMutableArrayRef array, CFNumberType type, const void* number) {
  return Append(array, Number(type, number));
}

bool AppendBoolOntoArray(CFMutableArrayRef array, bool value) { return Append(array, Bool(value)); }

}  // namespace quillmark::NCFUtils
