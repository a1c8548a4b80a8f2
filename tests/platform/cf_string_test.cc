#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

namespace quillmark {
namespace {

CFRef<CFStringRef> FromUtf8(const char* text) {
  return Adopt(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

// Every unit of the string; "(null)" for no string.
std::u16string Units(CFStringRef string) {
  if (!string) return u"(null)";
  std::basic_string<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)), 0);
  CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), units.data());
  return {units.begin(), units.end()};
}

TEST(CFString, DecodesCTextOrIsNull) {
  const std::tuple<CFStringEncoding, const char*, const char16_t*> rows[] = {
      {kCFStringEncodingUTF8, "ok\xC3", u"(null)"},
      {kCFStringEncodingMacRoman, "\x8E\xDB", u"\u00E9\u20AC"},
      {kCFStringEncodingMacJapanese, "\\\xFF", u"\u00A5\u2026"},
      {kCFStringEncodingShiftJIS, "\\\x96\xBE", u"\\\u660E"},
      {kCFStringEncodingASCII, "\x8E", u"(null)"},
      {0x0420, "plain", u"(null)"}};
  for (const auto& [encoding, text, units] : rows) {
    EXPECT_EQ(Units(Adopt(CFStringCreateWithCString(nullptr, text, encoding)).get()), units) << encoding;
  }
}

TEST(CFString, CopiesUtf8OutWhenTextAndNulFit) {
  const std::string text(1023, 'x');
  const auto string = FromUtf8(text.c_str());
  std::array<char, 1024> buffer{};
  EXPECT_TRUE(CFStringGetCString(string.get(), buffer.data(), 1024, kCFStringEncodingUTF8));
  EXPECT_EQ(buffer.data(), text);
  EXPECT_FALSE(CFStringGetCString(string.get(), buffer.data(), 1023, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(FromUtf8("").get(), buffer.data(), 0, kCFStringEncodingUTF8));
}

TEST(CFString, ComparesByCodeUnit) {
  EXPECT_EQ(CFStringCompare(FromUtf8("Bold").get(), FromUtf8("bold").get(), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(FromUtf8("\u00E9").get(), FromUtf8("e\u0301").get(), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(FromUtf8("\U00010000").get(), FromUtf8("\uFFFD").get(), 0), kCFCompareLessThan);
}

TEST(CFString, MutableOnesChangeAloneAndKeepTheirDirectPointerTrue) {
  const auto original = FromUtf8("Abc");
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
}

}  // namespace
}  // namespace quillmark
