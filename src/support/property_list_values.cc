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

template <typename T>
CFRef<CFTypeRef> Number(CFNumberType type, T value) {
  return Adopt<CFTypeRef>(CFNumberCreate(kCFAllocatorDefault, type, &value));
}
CFRef<CFTypeRef> Char(std::int8_t value) { return Number(kCFNumberCharType, value); }
CFRef<CFTypeRef> Short(std::int16_t value) { return Number(kCFNumberShortType, value); }
CFRef<CFTypeRef> Long(std::int32_t value) { return Number(kCFNumberLongType, value); }

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

bool GetCharFromCFValue(CFTypeRef value, std::int8_t& out) {
  return GetNumberFromCFValue(value, kCFNumberCharType, &out);
}

bool GetShortFromCFValue(CFTypeRef value, std::int16_t& out) {
  return GetNumberFromCFValue(value, kCFNumberShortType, &out);
}

bool GetLongFromCFValue(CFTypeRef value, std::int32_t& out) {
  return GetNumberFromCFValue(value, kCFNumberLongType, &out);
}

bool GetLongLongFromCFValue(CFTypeRef value, std::int64_t& out) {
  return GetNumberFromCFValue(value, kCFNumberLongLongType, &out);
}

bool GetFloatFromCFValue(CFTypeRef value, float& out) {
  return GetNumberFromCFValue(value, kCFNumberFloatType, &out);
}

bool GetDoubleFromCFValue(CFTypeRef value, double& out) {
  return GetNumberFromCFValue(value, kCFNumberDoubleType, &out);
}

bool GetBoolFromCFValue(CFTypeRef value, bool& out) {
  if (!HasType(value, CFBooleanGetTypeID())) return false;
  out = CFBooleanGetValue(static_cast<CFBooleanRef>(value));
  return true;
}

bool GetCharFromDict(CFDictionaryRef dict, CFStringRef key, std::int8_t& out) {
  return GetCharFromCFValue(GetCFNumberFromDict(dict, key), out);
}

bool GetShortFromDict(CFDictionaryRef dict, CFStringRef key, std::int16_t& out) {
  return GetShortFromCFValue(GetCFNumberFromDict(dict, key), out);
}

bool GetLongFromDict(CFDictionaryRef dict, CFStringRef key, std::int32_t& out) {
  return GetLongFromCFValue(GetCFNumberFromDict(dict, key), out);
}

bool GetLongLongFromDict(CFDictionaryRef dict, CFStringRef key, std::int64_t& out) {
  return GetLongLongFromCFValue(GetCFNumberFromDict(dict, key), out);
}

bool GetFloatFromDict(CFDictionaryRef dict, CFStringRef key, float& out) {
  return GetFloatFromCFValue(GetCFNumberFromDict(dict, key), out);
}

bool GetDoubleFromDict(CFDictionaryRef dict, CFStringRef key, double& out) {
  return GetDoubleFromCFValue(GetCFNumberFromDict(dict, key), out);
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

bool PutCharIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int8_t value) {
  return Put(dict, key, Char(value));
}

bool PutShortIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int16_t value) {
  return Put(dict, key, Short(value));
}

bool PutLongIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int32_t value) {
  return Put(dict, key, Long(value));
}

bool PutUnsignedLongIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::uint32_t value) {
  return Put(dict, key, Long(static_cast<std::int32_t>(value)));
}

bool PutBoolIntoDict(CFMutableDictionaryRef dict, CFStringRef key, bool value) {
  return Put(dict, key, Bool(value));
}

bool AppendCStringOntoArray(CFMutableArrayRef array, const char* text) {
  return Append(array, Text(text, kCFStringEncodingUTF8));
}

bool AppendCharOntoArray(CFMutableArrayRef array, std::int8_t value) { return Append(array, Char(value)); }

bool AppendShortOntoArray(CFMutableArrayRef array, std::int16_t value) { return Append(array, Short(value)); }

bool AppendLongOntoArray(CFMutableArrayRef array, std::int32_t value) { return Append(array, Long(value)); }

bool AppendUnsignedLongOntoArray(CFMutableArrayRef array, std::uint32_t value) {
  return Append(array, Long(static_cast<std::int32_t>(value)));
}

bool AppendBoolOntoArray(CFMutableArrayRef array, bool value) { return Append(array, Bool(value)); }

}  // namespace quillmark::NCFUtils
