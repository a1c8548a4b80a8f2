#include "platform/core_foundation/core_foundation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <tuple>

#include "platform/core_foundation/cf_bundle.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"

namespace quillmark {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

// Every unit of the string; "(null)" for no string.
std::u16string Units(CFStringRef string) {
  if (!string) return u"(null)";
  std::basic_string<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)), 0);
  CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), units.data());
  return {units.begin(), units.end()};
}

TEST(Strings, AreDecodedFromCTextOrNull) {
  const std::tuple<CFStringEncoding, const char*, const char16_t*> rows[] = {
      {kCFStringEncodingUTF8, "ok\xC3", u"(null)"},
      {kCFStringEncodingMacRoman, "\x8E\xDB", u"\u00E9\u20AC"},
      {kCFStringEncodingMacJapanese, "\\\xFF", u"\u00A5\u2026"},
      {kCFStringEncodingShiftJIS, "\\\x96\xBE", u"\\\u660E"},
      {kCFStringEncodingASCII, "\x8E", u"(null)"}};
  for (const auto& [encoding, text, units] : rows) {
    EXPECT_EQ(Units(Adopt(CFStringCreateWithCString(nullptr, text, encoding)).get()), units) << encoding;
  }
}

TEST(Strings, MutableOnesChangeAloneAndKeepTheirDirectPointerTrue) {
  const auto original = Text("Abc");
  const auto copy = Adopt(CFStringCreateMutableCopy(nullptr, 0, original.get()));
  EXPECT_EQ(CFStringGetCStringPtr(copy.get(), kCFStringEncodingMacJapanese), nullptr);
  CFStringAppend(copy.get(), copy.get());
  CFStringAppendCString(copy.get(), "\xC3", kCFStringEncodingUTF8);
  EXPECT_STREQ(CFStringGetCStringPtr(copy.get(), kCFStringEncodingUTF8), "AbcAbc");
  CFStringAppendCString(copy.get(), "\x80", kCFStringEncodingMacRoman);
  EXPECT_EQ(CFStringGetCStringPtr(copy.get(), kCFStringEncodingUTF8), nullptr);
  CFStringLowercase(copy.get(), nullptr);
  EXPECT_EQ(Units(copy.get()), u"abcabc\u00E4");
  EXPECT_EQ(Units(original.get()), u"Abc");
  EXPECT_EQ(CFStringCompare(copy.get(), original.get(), 0), kCFCompareGreaterThan);
}

// Reads the number as a `T`; checks what is stored and whether that is the number itself.
template <typename T>
void Check(const CFNumberObject::Value& value, CFNumberType type, bool is_exact, T stored) {
  const auto number = Adopt<CFNumberRef>(new CFNumberObject(value));
  T out{};
  EXPECT_EQ(CFNumberGetValue(number.get(), type, &out), is_exact) << stored;
  EXPECT_EQ(out, stored);
}

TEST(Numbers, TellWhetherTheValueSurvives) {
  const auto integer = [](std::int64_t value) { return CFNumberObject::Value(value); };
  Check<std::int8_t>(integer(255), kCFNumberCharType, true, -1);  // the upper half is no loss
  Check<std::int8_t>(integer(256), kCFNumberCharType, false, 0);
  Check<std::int8_t>(integer(-129), kCFNumberCharType, false, 127);
  Check<std::int32_t>(integer(INT32_MIN), kCFNumberLongType, true, INT32_MIN);
  Check<std::int32_t>(integer(2147483648), kCFNumberLongType, false, INT32_MIN);
  Check<std::int64_t>(UINT64_MAX, kCFNumberLongLongType, true, -1);
  Check<std::int32_t>(2.5, kCFNumberLongType, false, 2);
  Check<std::int32_t>(1e10, kCFNumberLongType, false, INT32_MAX);
  Check<std::int32_t>(2147483648.0, kCFNumberLongType, false, INT32_MAX);
  Check<std::int32_t>(std::nan(""), kCFNumberLongType, false, 0);
  Check<float>(0.1, kCFNumberFloatType, false, 0.1F);
  Check<double>(INT64_MAX, kCFNumberDoubleType, false, 9223372036854775808.0);
}

TEST(Collections, RetainWhatTheyHoldAndReleaseItWhenReplaced) {
  const std::int64_t before = cf::Object::LiveCount();
  {
    const auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(array.get(), Text("old").get());
    CFArraySetValueAtIndex(array.get(), 0, Text("new").get());
    EXPECT_EQ(cf::Object::LiveCount(), before + 2);
    const auto dictionary = Adopt(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks));
    CFDictionarySetValue(dictionary.get(), Text("key").get(), array.get());
    CFDictionarySetValue(dictionary.get(), Text("key").get(), kCFBooleanTrue);
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), Text("key").get()), kCFBooleanTrue);
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), Text("Key").get()), nullptr);
  }
  EXPECT_EQ(cf::Object::LiveCount(), before);
}

TEST(Bundle, LiesBesideTheNearestFolderOfItsNames) {
  const std::pair<const char*, const char*> rows[] = {
      {"/usr/lib/x86_64-linux-gnu/libquillmark.so.1", "/usr/share/quillmark"},
      {"/opt/lib/q/lib64/libquillmark.so.1", "/opt/lib/q/share/quillmark"},
      {"/bin/quillmark", "/share/quillmark"},
      {"/home/libs/lib", "none"},  // the file's own name does not count
      {"", "none"}};
  for (const auto& [image, folder] : rows) {
    EXPECT_EQ(cf::BundleFolderBeside(image).value_or("none"), folder) << image;
  }
}

}  // namespace
}  // namespace quillmark
