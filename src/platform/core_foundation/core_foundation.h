// The part of the CoreFoundation interface that the library uses, under its own names and with its documented
// behaviour: reference-counted objects with type IDs. A function whose name holds Create or Copy returns a
// reference that the caller releases (see cf_ref.h); what a Get function returns belongs to the object it
// came from. Null is no object: Create functions return it on failure, and CFRetain and CFRelease must not be
// given it. Objects are immutable except the Mutable ones, and any thread may read an immutable one.
// Allocator arguments are ignored. Tests: tests/platform/core_foundation_test.cc, property_list_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CORE_FOUNDATION_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CORE_FOUNDATION_H_

#include <cstdint>

using CFTypeRef = const void*;
using CFTypeID = unsigned long;
using CFIndex = long;
using CFOptionFlags = unsigned long;
using CFStringEncoding = std::uint32_t;
using CFAllocatorRef = const struct CFAllocatorObject*;
using CFStringRef = const struct CFStringObject*;
using CFMutableStringRef = struct CFStringObject*;
using CFDataRef = const struct CFDataObject*;
using CFNumberRef = const struct CFNumberObject*;
using CFBooleanRef = const struct CFBooleanObject*;
using CFArrayRef = const struct CFArrayObject*;
using CFMutableArrayRef = struct CFArrayObject*;
using CFDictionaryRef = const struct CFDictionaryObject*;
using CFMutableDictionaryRef = struct CFDictionaryObject*;
using CFURLRef = const struct CFURLObject*;
using CFBundleRef = struct CFBundleObject*;
using CFLocaleRef = const struct CFLocaleObject*;
using CFPropertyListRef = CFTypeRef;
using Boolean = unsigned char;
using UniChar = std::uint16_t;
using UInt8 = std::uint8_t;

inline constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

// Objects.

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID();
CFTypeID CFNumberGetTypeID();
CFTypeID CFBooleanGetTypeID();
CFTypeID CFArrayGetTypeID();
CFTypeID CFDictionaryGetTypeID();

// Strings: UTF-16 code units.

enum : CFStringEncoding {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingMacJapanese = 1,
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingShiftJIS = 0x0A01,
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingInvalidId = 0xFFFFFFFFu,
};

using CFStringCompareFlags = CFOptionFlags;
enum CFComparisonResult : CFIndex {
  kCFCompareLessThan = -1,
  kCFCompareEqualTo = 0,
  kCFCompareGreaterThan = 1
};
struct CFRange {
  CFIndex location;
  CFIndex length;
};
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return {location, length}; }

// Null for text that is invalid in `encoding` (see text_encoding.h for what is), and for an unknown encoding.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
CFStringRef CFStringCreateWithPascalString(CFAllocatorRef allocator, const unsigned char* text,
                                           CFStringEncoding encoding);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* units, CFIndex count);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength, CFStringRef string);
void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding);
// Unicode's full lower-case mapping; `locale` must be null.
void CFStringLowercase(CFMutableStringRef string, CFLocaleRef locale);
CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
// A pointer that lives as long as the string, for ASCII text; else null. Callers handle both.
const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);
// UTF-8 only. False, with unspecified buffer contents, for another encoding, when text and NUL do not fit,
// and when a lone surrogate stands in the string.
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b,
                                   CFStringCompareFlags options);  // by code unit
CFStringEncoding CFStringGetSystemEncoding();                      // MacRoman
CFStringEncoding GetApplicationTextEncoding();                     // MacRoman

// Data, numbers, booleans, dates.

CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

enum CFNumberType : CFIndex {
  kCFNumberSInt8Type = 1,
  kCFNumberSInt16Type = 2,
  kCFNumberSInt32Type = 3,
  kCFNumberSInt64Type = 4,
  kCFNumberFloat32Type = 5,
  kCFNumberFloat64Type = 6,
  kCFNumberCharType = 7,
  kCFNumberShortType = 8,
  kCFNumberIntType = 9,
  kCFNumberLongType = 10,  // 32 bits here
  kCFNumberLongLongType = 11,
  kCFNumberFloatType = 12,
  kCFNumberDoubleType = 13,
};
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
// Always stores a value; false when it differs from the number.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
Boolean CFBooleanGetValue(CFBooleanRef boolean);

using CFAbsoluteTime = double;  // seconds since 2001-01-01T00:00:00Z

// Collections: they retain what they hold.

struct CFArrayCallBacks;
struct CFDictionaryKeyCallBacks;
struct CFDictionaryValueCallBacks;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                       const CFArrayCallBacks* callbacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
void CFArrayAppendValue(CFMutableArrayRef array, const void* value);
void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value);

// Keys are strings, compared by UTF-16 code unit.
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallbacks,
                                                 const CFDictionaryValueCallBacks* valueCallbacks);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);

// URLs and bundles.

enum CFURLPathStyle : CFIndex { kCFURLPOSIXPathStyle = 0 };
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
CFStringRef CFURLGetString(CFURLRef url);

// The library's own bundle is the only one; it is kept for the life of the process and not to be released.
// Null when the identifier is another's, or when no bundle folder is found.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

// Property lists.

enum CFPropertyListMutabilityOptions : CFOptionFlags {
  kCFPropertyListImmutable = 0,
  kCFPropertyListMutableContainers = 1,
};
CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef allocator, CFPropertyListRef list);
// Either a tree and *errorString null, or null and an error string that the caller releases.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags mutability, CFStringRef* errorString);

#endif
