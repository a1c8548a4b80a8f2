#include "support/property_list_values.h"

#include <gtest/gtest.h>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"

namespace quillmark::NCFUtils {
namespace {

class PropertyListValues : public testing::Test {
 protected:
  const std::int64_t objects_before_ = cf::Object::LiveCount();
  CFRef<CFMutableDictionaryRef> dict_ = Adopt(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFRef<CFStringRef> key_ = Adopt(CFStringCreateWithCString(nullptr, "key", kCFStringEncodingUTF8));
};

TEST_F(PropertyListValues, AnswerForTheirTypeOnly) {
  std::int32_t number = 77;
  bool truth = true;

  EXPECT_FALSE(GetLongFromDict(dict_.get(), key_.get(), number));

  ASSERT_TRUE(PutLongIntoDict(dict_.get(), key_.get(), 1));
  EXPECT_EQ(GetCFStringFromDict(dict_.get(), key_.get()), nullptr);
  EXPECT_FALSE(GetBoolFromDict(dict_.get(), key_.get(), truth)) << "the number 1 is no boolean";

  ASSERT_TRUE(PutBoolIntoDict(dict_.get(), key_.get(), false));
  EXPECT_FALSE(GetLongFromDict(dict_.get(), key_.get(), number)) << "a boolean is no number";
  EXPECT_TRUE(number == 77 && truth) << "both untouched";

  std::int16_t as_short = 0;
  PutLongIntoDict(dict_.get(), key_.get(), (1 << 24) + 1);
  EXPECT_FALSE(GetShortFromDict(dict_.get(), key_.get(), as_short));
  EXPECT_EQ(as_short, 1) << "the low bits are stored though the answer is false";
}

TEST_F(PropertyListValues, PutAndAppendReleaseWhatTheyMake) {
  std::int32_t number = 0;
  PutUnsignedLongIntoDict(dict_.get(), key_.get(), 0xFFFFFFFEu);
  EXPECT_TRUE(GetLongFromDict(dict_.get(), key_.get(), number));
  EXPECT_EQ(number, -2);
  EXPECT_TRUE(PutNullTermCharPtrIntoDict(dict_.get(), key_.get(), "\x8E", kCFStringEncodingMacRoman));
  EXPECT_EQ(OmString(GetCFStringFromDict(dict_.get(), key_.get())).str(), "\u00E9");
  EXPECT_FALSE(PutCStringIntoDict(dict_.get(), key_.get(), "\x8E")) << "no UTF-8";
  EXPECT_NE(GetCFStringFromDict(dict_.get(), key_.get()), nullptr) << "the old one is still there";

  auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  EXPECT_TRUE(AppendCStringOntoArray(array.get(), "\xC3\xA9"));
  EXPECT_TRUE(AppendLongOntoArray(array.get(), 3));
  EXPECT_FALSE(AppendCStringOntoArray(array.get(), "\xFF"));
  EXPECT_EQ(CFArrayGetCount(array.get()), 2);
  array = {};
  dict_ = {};
  key_ = {};
  EXPECT_EQ(cf::Object::LiveCount(), objects_before_);
}

}  // namespace
}  // namespace quillmark::NCFUtils
