// Typed access to the values of property lists. The Get functions answer only for a value of exactly their
// type (a number is no boolean); when they return false or null the output is unchanged, except for a number
// that does not fit its type: its converted value is stored. Null dictionaries, arrays, keys and values are
// allowed and answer false or null. What a Get function returns is not retained. Tests:
// tests/support/property_list_values_test.cc.
#ifndef QUILLMARK_SUPPORT_PROPERTY_LIST_VALUES_H_
#define QUILLMARK_SUPPORT_PROPERTY_LIST_VALUES_H_

#include <cstdint>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark::NCFUtils {

// --- Values under a key
bool GetCFTypeFromDict(CFDictionaryRef dict, CFStringRef key, CFTypeID typeID, const void*& out);
CFStringRef GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key);
CFArrayRef GetCFArrayFromDict(CFDictionaryRef dict, CFStringRef key);
CFNumberRef GetCFNumberFromDict(CFDictionaryRef dict, CFStringRef key);
CFBooleanRef GetCFBooleanFromDict(CFDictionaryRef dict, CFStringRef key);
CFStringRef NCFGetCFStringFromDictionary(CFDictionaryRef dict, CFStringRef key);

// --- Numbers and booleans; false also for a number that loses something in the type asked for
bool GetNumberFromCFValue(CFTypeRef value, CFNumberType type, void* out);
bool GetCharFromCFValue(CFTypeRef value, std::int8_t& out);
bool GetShortFromCFValue(CFTypeRef value, std::int16_t& out);
bool GetLongFromCFValue(CFTypeRef value, std::int32_t& out);
bool GetLongLongFromCFValue(CFTypeRef value, std::int64_t& out);
bool GetFloatFromCFValue(CFTypeRef value, float& out);
bool GetDoubleFromCFValue(CFTypeRef value, double& out);
bool GetBoolFromCFValue(CFTypeRef value, bool& out);

bool GetCharFromDict(CFDictionaryRef dict, CFStringRef key, std::int8_t& out);
bool GetShortFromDict(CFDictionaryRef dict, CFStringRef key, std::int16_t& out);
bool GetLongFromDict(CFDictionaryRef dict, CFStringRef key, std::int32_t& out);
bool GetLongLongFromDict(CFDictionaryRef dict, CFStringRef key, std::int64_t& out);
bool GetFloatFromDict(CFDictionaryRef dict, CFStringRef key, float& out);
bool GetDoubleFromDict(CFDictionaryRef dict, CFStringRef key, double& out);
bool GetBoolFromDict(CFDictionaryRef dict, CFStringRef key, bool& out);

// --- Strings as UTF-16 units
// A new buffer of the string's units and a zero one, for the caller to free().
bool GetStringFromCFValue(CFTypeRef value, UniChar*& out);
// Copies the units and returns how many there are; with more of them than `capacity` copies nothing and
// returns that number negated. 0 also when there is no string.
std::int32_t NCFGetUniStringFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                           std::int32_t capacity);
// The same, and a zero unit behind the copy where one fits. An empty string leaves the buffer as it was.
std::int32_t NCFGetUniStringNullTermFromDictionary(CFDictionaryRef dict, CFStringRef key, UniChar* buf,
                                                   std::int32_t capacity);

// --- Writing: false, with nothing stored, for text that is invalid in its encoding
bool PutCStringIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text);  // UTF-8
bool PutNullTermCharPtrIntoDict(CFMutableDictionaryRef dict, CFStringRef key, const char* text,
                                CFStringEncoding encoding);
bool PutCharIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int8_t value);
bool PutShortIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int16_t value);
bool PutLongIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::int32_t value);
// Kept as a signed long of the same 32 bits.
bool PutUnsignedLongIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::uint32_t value);
bool PutBoolIntoDict(CFMutableDictionaryRef dict, CFStringRef key, bool value);

bool AppendCStringOntoArray(CFMutableArrayRef array, const char* text);  // UTF-8
bool AppendCharOntoArray(CFMutableArrayRef array, std::int8_t value);
bool AppendShortOntoArray(CFMutableArrayRef array, std::int16_t value);
bool AppendLongOntoArray(CFMutableArrayRef array, std::int32_t value);
bool AppendUnsignedLongOntoArray(CFMutableArrayRef array, std::uint32_t value);
bool AppendBoolOntoArray(CFMutableArrayRef array, bool value);

}  // namespace quillmark::NCFUtils

#endif
