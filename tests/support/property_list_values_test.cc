#include "support/property_list_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/cf_object.h"
#include "platform/cf_ref.h"
#include "support/om_string.h"

namespace quillmark::NCFUtils {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

class PropertyListValues : public testing::Test {
 protected:
  const std::int64_t objects_before_ = cf::Object::LiveCount();
  CFRef<CFMutableDictionaryRef> dict_ = Adopt(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFRef<CFStringRef> key_ = Text("key");
};

TEST_F(PropertyListValues, AnswerForTheirTypeOnly) {
  std::int32_t number = 77;
  bool truth = true;
  const auto untouched = [&] { return number == 77 && truth; };

  EXPECT_EQ(GetCFStringFromDict(dict_.get(), key_.get()), nullptr) << "no such key";
  EXPECT_FALSE(GetLongFromDict(dict_.get(), key_.get(), number));
  EXPECT_FALSE(GetLongFromDict(nullptr, key_.get(), number));
  EXPECT_FALSE(GetLongFromDict(dict_.get(), nullptr, number));
  EXPECT_FALSE(GetLongFromCFValue(nullptr, number));

  ASSERT_TRUE(PutLongIntoDict(dict_.get(), key_.get(), 1));
  EXPECT_EQ(GetCFStringFromDict(dict_.get(), key_.get()), nullptr);
  EXPECT_EQ(NCFGetCFStringFromDictionary(dict_.get(), key_.get()), nullptr);
  EXPECT_EQ(GetCFArrayFromDict(dict_.get(), key_.get()), nullptr);
  EXPECT_FALSE(GetBoolFromDict(dict_.get(), key_.get(), truth)) << "the number 1 is no boolean";
  EXPECT_FALSE(
      GetNumberFromCFValue(GetCFNumberFromDict(dict_.get(), key_.get()), kCFNumberLongType, nullptr));

  ASSERT_TRUE(PutBoolIntoDict(dict_.get(), key_.get(), false));
  EXPECT_FALSE(GetLongFromDict(dict_.get(), key_.get(), number)) << "a boolean is no number";
  EXPECT_FALSE(GetLongFromCFValue(kCFBooleanTrue, number));
  EXPECT_TRUE(untouched());
  EXPECT_TRUE(GetBoolFromDict(dict_.get(), key_.get(), truth));
  EXPECT_FALSE(truth);
}

TEST_F(PropertyListValues, GetNumbersInTheirTypes) {
  std::int8_t as_char = 0;
  std::int16_t as_short = 0;
  std::int64_t as_long_long = 0;
  float as_float = 0;
  double as_double = 0;
  PutLongIntoDict(dict_.get(), key_.get(), 200);
  EXPECT_TRUE(GetCharFromDict(dict_.get(), key_.get(), as_char));
  EXPECT_EQ(as_char, -56);
  PutLongIntoDict(dict_.get(), key_.get(), (1 << 24) + 1);
  EXPECT_FALSE(GetShortFromDict(dict_.get(), key_.get(), as_short));
  EXPECT_EQ(as_short, 1) << "the low bits are stored though the answer is false";
  EXPECT_TRUE(GetLongLongFromDict(dict_.get(), key_.get(), as_long_long));
  EXPECT_TRUE(GetDoubleFromDict(dict_.get(), key_.get(), as_double));
  EXPECT_FALSE(GetFloatFromDict(dict_.get(), key_.get(), as_float));
  EXPECT_EQ(as_long_long, 16777217);
  EXPECT_EQ(as_double, 16777217.0);
}

TEST_F(PropertyListValues, CopyStringsAsUnits) {
  struct {
    std::string text;
    std::int32_t capacity;
    std::int32_t result;
    std::u16string plain;  // the buffer after each of the two calls, from "????"
    std::u16string terminated;
  } const rows[] = {
      {"ab", 4, 2, u"ab??", std::u16string(u"ab\0?", 4)},
      {"ab", 3, 2, u"ab??", std::u16string(u"ab\0?", 4)},
      {"ab", 2, 2, u"ab??", u"ab??"},
      {"ab", 1, -2, u"????", u"????"},
      {"", 4, 0, u"????", u"????"},
      {"\xF0\x9D\x84\x9E", 4, 2, u"\xD834\xDD1E??", std::u16string(u"\xD834\xDD1E\0?", 4)},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(PutCStringIntoDict(dict_.get(), key_.get(), row.text.c_str()));
    UniChar buffer[4] = {'?', '?', '?', '?'};
    EXPECT_EQ(NCFGetUniStringFromDictionary(dict_.get(), key_.get(), buffer, row.capacity), row.result);
    EXPECT_EQ(std::u16string(buffer, buffer + 4), row.plain) << row.text << row.capacity;
    std::fill(buffer, buffer + 4, '?');
    EXPECT_EQ(NCFGetUniStringNullTermFromDictionary(dict_.get(), key_.get(), buffer, row.capacity),
              row.result);
    EXPECT_EQ(std::u16string(buffer, buffer + 4), row.terminated) << row.text << row.capacity;
  }
  PutBoolIntoDict(dict_.get(), key_.get(), true);
  EXPECT_EQ(NCFGetUniStringNullTermFromDictionary(dict_.get(), key_.get(), nullptr, 0), 0) << "not a string";

  UniChar* units = nullptr;
  EXPECT_FALSE(GetStringFromCFValue(kCFBooleanTrue, units));
  ASSERT_TRUE(GetStringFromCFValue(key_.get(), units));
  EXPECT_EQ(std::u16string(units, units + 4), std::u16string(u"key\0", 4));
  std::free(units);
}

TEST_F(PropertyListValues, PutAndAppendReleaseWhatTheyMake) {
  const auto put = [&](bool is_put, CFTypeID type) {
    const void* value = nullptr;
    EXPECT_TRUE(is_put && GetCFTypeFromDict(dict_.get(), key_.get(), type, value));
    return value;
  };
  put(PutCharIntoDict(dict_.get(), key_.get(), -1), CFNumberGetTypeID());
  put(PutShortIntoDict(dict_.get(), key_.get(), -1), CFNumberGetTypeID());
  std::int32_t number = 0;
  EXPECT_TRUE(GetLongFromCFValue(
      put(PutUnsignedLongIntoDict(dict_.get(), key_.get(), 0xFFFFFFFEu), CFNumberGetTypeID()), number));
  EXPECT_EQ(number, -2);
  const auto roman = static_cast<CFStringRef>(
      put(PutNullTermCharPtrIntoDict(dict_.get(), key_.get(), "\x8E", kCFStringEncodingMacRoman),
          CFStringGetTypeID()));
  EXPECT_EQ(OmString(roman).str(), "\u00E9");
  EXPECT_FALSE(PutCStringIntoDict(dict_.get(), key_.get(), "\x8E")) << "no UTF-8";
  EXPECT_FALSE(PutCStringIntoDict(dict_.get(), key_.get(), nullptr));
  EXPECT_EQ(GetCFStringFromDict(dict_.get(), key_.get()), roman) << "still there";

  auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  EXPECT_TRUE(AppendCStringOntoArray(array.get(), "\xC3\xA9"));
  EXPECT_TRUE(AppendCharOntoArray(array.get(), 1));
  EXPECT_TRUE(AppendShortOntoArray(array.get(), 2));
  EXPECT_TRUE(AppendLongOntoArray(array.get(), 3));
  EXPECT_TRUE(AppendUnsignedLongOntoArray(array.get(), 4));
  EXPECT_TRUE(AppendBoolOntoArray(array.get(), true));
  EXPECT_FALSE(AppendCStringOntoArray(array.get(), "\xFF"));
  ASSERT_EQ(CFArrayGetCount(array.get()), 6);
  for (CFIndex i = 1; i <= 4; ++i) {
    EXPECT_TRUE(GetLongFromCFValue(CFArrayGetValueAtIndex(array.get(), i), number));
    EXPECT_EQ(number, i);
  }
  array = {};
  dict_ = {};
  key_ = {};
  EXPECT_EQ(cf::Object::LiveCount(), objects_before_);
}

}  // namespace
}  // namespace quillmark::NCFUtils
