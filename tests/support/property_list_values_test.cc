#include "support/property_list_values.h"

#include <gtest/gtest.h>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"

namespace quillmark::NCFUtils {
namespace {

TEST(PropertyListValues, AnswerForTheirTypeOnlyAndReleaseWhatTheyMake) {
  const std::int64_t objects_before = cf::Object::LiveCount();
  {
    const auto owned = Adopt(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                       &kCFTypeDictionaryValueCallBacks));
    const auto name = Adopt(CFStringCreateWithCString(nullptr, "key", kCFStringEncodingUTF8));
    const CFMutableDictionaryRef dict = owned.get();
    const CFStringRef key = name.get();
    std::int32_t number = 77;
    bool truth = true;
    EXPECT_FALSE(GetLongFromDict(dict, key, number));
    EXPECT_TRUE(PutLongIntoDict(dict, key, 1));
    EXPECT_EQ(GetCFStringFromDict(dict, key), nullptr);
    EXPECT_FALSE(GetBoolFromDict(dict, key, truth)) << "the number 1 is no boolean";
    EXPECT_TRUE(PutBoolIntoDict(dict, key, false));
    EXPECT_FALSE(GetLongFromDict(dict, key, number)) << "a boolean is no number";
    EXPECT_TRUE(number == 77 && truth) << "both untouched";
    EXPECT_TRUE(PutUnsignedLongIntoDict(dict, key, 0xFF000001u));
    EXPECT_TRUE(GetLongFromDict(dict, key, number));
    EXPECT_EQ(number, -0xFFFFFF);
    std::int16_t as_short = 0;
    EXPECT_FALSE(GetShortFromDict(dict, key, as_short));
    EXPECT_EQ(as_short, 1) << "the low bits are stored though the answer is false";

    EXPECT_TRUE(PutNullTermCharPtrIntoDict(dict, key, "\x8E", kCFStringEncodingMacRoman));
    EXPECT_FALSE(PutCStringIntoDict(dict, key, "\x8E")) << "no UTF-8";
    EXPECT_EQ(OmString(GetCFStringFromDict(dict, key)).str(), "\u00E9") << "the old one is still there";
    const auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    EXPECT_TRUE(AppendCStringOntoArray(array.get(), "\xC3\xA9"));
    EXPECT_TRUE(AppendLongOntoArray(array.get(), 3));
    EXPECT_FALSE(AppendCStringOntoArray(array.get(), "\xFF"));
    EXPECT_EQ(CFArrayGetCount(array.get()), 2);
  }
  EXPECT_EQ(cf::Object::LiveCount(), objects_before);
}

}  // namespace
}  // namespace quillmark::NCFUtils
