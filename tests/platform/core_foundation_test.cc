#include "platform/core_foundation/core_foundation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/core_foundation/cf_bundle.h"
#include "platform/core_foundation/cf_number.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"

namespace quillmark {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

template <typename T>
struct Got {
  bool is_exact;
  T value;
  bool operator==(const Got&) const = default;
};

template <typename T>
Got<T> Get(const CFNumberObject::Value& value, CFNumberType type) {
  const auto number = Adopt<CFNumberRef>(new CFNumberObject(value));
  T out{};
  const bool is_exact = CFNumberGetValue(number.get(), type, &out);
  return {is_exact, out};
}

TEST(Numbers, TellWhetherTheValueSurvives) {
  const auto integer = [](std::int64_t value) { return CFNumberObject::Value(value); };
  using Char = Got<std::int8_t>;
  EXPECT_EQ(Get<std::int8_t>(integer(255), kCFNumberCharType), (Char{true, -1}))
      << "the upper half is no loss";
  EXPECT_EQ(Get<std::int8_t>(integer(256), kCFNumberCharType), (Char{false, 0})) << "stored all the same";
  EXPECT_EQ(Get<std::int8_t>(integer(-129), kCFNumberCharType), (Char{false, 127}));
  EXPECT_EQ(Get<std::int16_t>(integer(65535), kCFNumberShortType), (Got<std::int16_t>{true, -1}));
  using Long = Got<std::int32_t>;
  EXPECT_EQ(Get<std::int32_t>(integer(INT32_MIN), kCFNumberLongType), (Long{true, INT32_MIN}));
  EXPECT_FALSE(Get<std::int32_t>(integer(2147483648), kCFNumberLongType).is_exact);
  EXPECT_EQ(Get<std::int64_t>(UINT64_MAX, kCFNumberLongLongType), (Got<std::int64_t>{true, -1}));

  EXPECT_EQ(Get<std::int32_t>(2.5, kCFNumberLongType), (Long{false, 2}));
  EXPECT_EQ(Get<std::int32_t>(1e10, kCFNumberLongType), (Long{false, INT32_MAX}));
  EXPECT_EQ(Get<std::int32_t>(std::nan(""), kCFNumberLongType), (Long{false, 0}));
  EXPECT_FALSE(Get<std::int64_t>(9223372036854775808.0, kCFNumberLongLongType).is_exact);
  EXPECT_FALSE(Get<float>(0.1, kCFNumberFloatType).is_exact);
  EXPECT_TRUE(Get<float>(HUGE_VAL, kCFNumberFloatType).is_exact);
  EXPECT_FALSE(Get<double>(INT64_MAX, kCFNumberDoubleType).is_exact) << "rounds up to 2^63";
}

TEST(Collections, RetainWhatTheyHoldAndReleaseItWhenReplaced) {
  const std::int64_t before = cf::Object::LiveCount();
  {
    const auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(array.get(), Text("old").get());
    EXPECT_EQ(cf::Object::LiveCount(), before + 2);
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
  struct {
    const char* image;
    const char* folder;
  } const rows[] = {
      {"/usr/lib/x86_64-linux-gnu/libquillmark.so.1", "/usr/share/quillmark"},
      {"/opt/lib/q/lib64/libquillmark.so.1", "/opt/lib/q/share/quillmark"},
      {"/bin/quillmark", "/share/quillmark"},
      {"/home/libs/lib", nullptr},  // the file's own name does not count
      {"", nullptr},
  };
  for (const auto& row : rows) {
    const auto folder = cf::BundleFolderBeside(row.image);
    EXPECT_EQ(folder.value_or("none"), row.folder ? row.folder : "none") << row.image;
  }
}

}  // namespace
}  // namespace quillmark
