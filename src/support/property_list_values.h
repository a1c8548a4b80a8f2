// Typed access to the values of property lists. The Get functions answer only for a value of exactly their
// type (a number is no boolean); when they return false or null the output is unchanged, except for a number
// that does not fit its type: its converted value is stored. Null dictionaries, arrays, keys and values are
// allowed and answer false or null. What a Get function returns is not retained. Tests:
// tests/support/bundle_property_list_test.cc.
#ifndef QUILLMARK_SUPPORT_PROPERTY_LIST_VALUES_H_
#define QUILLMARK_SUPPORT_PROPERTY_LIST_VALUES_H_

#include <cstdint>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark {

// The value when it has the type, else null, as for null.
CFArrayRef AsArray(CFTypeRef value);
CFBooleanRef AsBoolean(CFTypeRef value);
CFDictionaryRef AsDictionary(CFTypeRef value);
CFNumberRef AsNumber(CFTypeRef value);
CFStringRef AsString(CFTypeRef value);

namespace NCFUtils {

// --- Values under a key
bool GetCFTypeFromDict(CFDictionaryRef dict, CFStringRef key, CFTypeID typeID, const void*& out);
CFStringRef GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key);
CFArrayRef GetCFArrayFromDict(CFDictionaryRef dict, CFStringRef key);
CFNumberRef GetCFNumberFromDict(CFDictionaryRef dict, CFStringRef key);
CFBooleanRef GetCFBooleanFromDict(CFDictionaryRef dict, CFStringRef key);
CFStringRef NCFGetCFStringFromDictionary(CFDictionaryRef dict, CFStringRef key);

// --- Booleans and numbers; false also for a number that loses something in the requested type
bool GetBoolFromCFValue(CFTypeRef value, bool& out);
bool GetBoolFromDict(CFDictionaryRef dict, CFStringRef key, bool& out);
bool GetNumberFromCFValue(CFTypeRef value, CFNumberType type, void* out);

template <typename T, CFNumberType type>
bool NumberFromCFValue(CFTypeRef value, T& out) {
  return GetNumberFromCFValue(value, type, &out);
}
inline constexpr auto GetCharFromCFValue = NumberFromCFValue<std::int8_t, kCFNumberCharType>;
inline constexpr auto GetShortFromCFValue = NumberFromCFValue<std::int16_t, kCFNumberShortType>;
inline constexpr auto GetLongFromCFValue = NumberFromCFValue<std::int32_t, kCFNumberLongType>;
inline constexpr auto GetLongLongFromCFValue = NumberFromCFValue<std::int64_t, kCFNumberLongLongType>;
inline constexpr auto GetFloatFromCFValue = NumberFromCFValue<float, kCFNumberFloatType>;
inline constexpr auto GetDoubleFromCFValue = NumberFromCFValue<double, kCFNumberDoubleType>;

template <typename T, CFNumberType type>
bool NumberFromDict(CFDictionaryRef dict, CFStringRef key, T& out) {
  return GetNumberFromCFValue(GetCFNumberFromDict(dict, key), type, &out);
}
inline constexpr auto GetCharFromDict = NumberFromDict<std::int8_t, kCFNumberCharType>;
inline constexpr auto GetShortFromDict = NumberFromDict<std::int16_t, kCFNumberShortType>;
inline constexpr auto GetLongFromDict = NumberFromDict<std::int32_t, kCFNumberLongType>;
inline constexpr auto GetLongLongFromDict = NumberFromDict<std::int64_t, kCFNumberLongLongType>;
inline constexpr auto GetFloatFromDict = NumberFromDict<float, kCFNumberFloatType>;
inline constexpr auto GetDoubleFromDict = NumberFromDict<double, kCFNumberDoubleType>;

// --- Strings as UTF-16 units
// A new buffer of the string's units and a zero one, for the caller to free().
bool GetStringFromCFValue(CFTypeRef value, UniChar*& out);
// Copies the units and returns how many there are; with more of them than `capacity` copies nothing and
// returns that number negated. 0 also when there is no string.
std::int32_t NCFGetUniStringFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                           std::int32_t capacity);
// The same, and a zero unit after the copy where one fits. An empty string leaves the buffer as it was.
std::int32_t NCFGetUniStringNullTermFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                                   std::int32_t capacity);

// --- Writing: false, with nothing stored, for text that is invalid in its encoding
bool PutCStringIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text);  // UTF-8
bool PutNullTermCharPtrIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text,
                                CFStringEncoding encoding);
bool PutBoolIntoDict(CFMutableDictionaryRef dict, CFStringRef key, bool value);
bool PutNumberIntoDict(CFMutableDictionaryRef dict, CFStringRef key, CFNumberType type, const void* number);

template <typename T, CFNumberType type>
bool NumberIntoDict(CFMutableDictionaryRef dict, CFStringRef key, T value) {
  return PutNumberIntoDict(dict, key, type, &value);
}
inline constexpr auto PutCharIntoDict = NumberIntoDict<std::int8_t, kCFNumberCharType>;
inline constexpr auto PutShortIntoDict = NumberIntoDict<std::int16_t, kCFNumberShortType>;
inline constexpr auto PutLongIntoDict = NumberIntoDict<std::int32_t, kCFNumberLongType>;
// Kept as a signed long of the same 32 bits.
inline constexpr auto PutUnsignedLongIntoDict = NumberIntoDict<std::uint32_t, kCFNumberLongType>;

bool AppendCStringOntoArray(CFMutableArrayRef array, const char* text);  // UTF-8
bool AppendBoolOntoArray(CFMutableArrayRef array, bool value);
bool AppendNumberOntoArray(CFMutableArrayRef array, CFNumberType type, const void* number);

template <typename T, CFNumberType type>
bool NumberOntoArray(CFMutableArrayRef array, T value) {
  return AppendNumberOntoArray(array, type, &value);
}
inline constexpr auto AppendCharOntoArray = NumberOntoArray<std::int8_t, kCFNumberCharType>;
inline constexpr auto AppendShortOntoArray = NumberOntoArray<std::int16_t, kCFNumberShortType>;
inline constexpr auto AppendLongOntoArray = NumberOntoArray<std::int32_t, kCFNumberLongType>;
inline constexpr auto AppendUnsignedLongOntoArray = NumberOntoArray<std::uint32_t, kCFNumberLongType>;

}  // namespace NCFUtils
}  // namespace quillmark

#endif
