#include "support/property_list_values.h"

#include <cstdlib>

#include "platform/core_foundation/cf_ref.h"

namespace quillmark {
namespace {

template <typename Ref>
Ref AsType(CFTypeRef value, CFTypeID type) {
  return value && CFGetTypeID(value) == type ? static_cast<Ref>(value) : nullptr;
}

}  // namespace

CFArrayRef AsArray(CFTypeRef value) { return AsType<CFArrayRef>(value, CFArrayGetTypeID()); }

CFBooleanRef AsBoolean(CFTypeRef value) { return AsType<CFBooleanRef>(value, CFBooleanGetTypeID()); }

CFDictionaryRef AsDictionary(CFTypeRef value) {
  return AsType<CFDictionaryRef>(value, CFDictionaryGetTypeID());
}

CFNumberRef AsNumber(CFTypeRef value) { return AsType<CFNumberRef>(value, CFNumberGetTypeID()); }

CFStringRef AsString(CFTypeRef value) { return AsType<CFStringRef>(value, CFStringGetTypeID()); }

namespace NCFUtils {
namespace {

CFTypeRef ValueUnder(CFDictionaryRef dict, CFStringRef key) {
  return dict && key ? CFDictionaryGetValue(dict, key) : nullptr;
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
  const CFTypeRef value = ValueUnder(dict, key);
  if (!value || CFGetTypeID(value) != typeID) return false;
  out = value;
  return true;
}

CFStringRef GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key) {
  return AsString(ValueUnder(dict, key));
}

CFArrayRef GetCFArrayFromDict(CFDictionaryRef dict, CFStringRef key) {
  return AsArray(ValueUnder(dict, key));
}

CFNumberRef GetCFNumberFromDict(CFDictionaryRef dict, CFStringRef key) {
  return AsNumber(ValueUnder(dict, key));
}

CFBooleanRef GetCFBooleanFromDict(CFDictionaryRef dict, CFStringRef key) {
  return AsBoolean(ValueUnder(dict, key));
}

CFStringRef NCFGetCFStringFromDictionary(CFDictionaryRef dict, CFStringRef key) {
  return GetCFStringFromDict(dict, key);
}

bool GetNumberFromCFValue(CFTypeRef value, CFNumberType type, void* out) {
  const CFNumberRef number = AsNumber(value);
  return number && out && CFNumberGetValue(number, type, out);
}

bool GetBoolFromCFValue(CFTypeRef value, bool& out) {
  const CFBooleanRef boolean = AsBoolean(value);
  if (!boolean) return false;
  out = CFBooleanGetValue(boolean);
  return true;
}

bool GetBoolFromDict(CFDictionaryRef dict, CFStringRef key, bool& out) {
  return GetBoolFromCFValue(GetCFBooleanFromDict(dict, key), out);
}

bool GetStringFromCFValue(CFTypeRef value, UniChar*& out) {
  const CFStringRef string = AsString(value);
  if (!string) return false;
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

}  // namespace NCFUtils
}  // namespace quillmark
