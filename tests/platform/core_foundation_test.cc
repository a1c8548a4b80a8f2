#include "platform/core_foundation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>

#include "platform/cf_bundle.h"
#include "platform/cf_number.h"
#include "platform/cf_object.h"
#include "platform/cf_ref.h"

namespace quillmark {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

std::string Utf8(CFStringRef text) {
  char buffer[300];
  return CFStringGetCString(text, buffer, sizeof buffer, kCFStringEncodingUTF8) ? buffer : "not UTF-8";
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

TEST(Numbers, TellWhetherAnIntegerFits) {
  const auto integer = [](std::int64_t value) { return CFNumberObject::Value(value); };
  using Char = Got<std::int8_t>;
  EXPECT_EQ(Get<std::int8_t>(integer(-128), kCFNumberCharType), (Char{true, -128}));
  EXPECT_EQ(Get<std::int8_t>(integer(255), kCFNumberCharType), (Char{true, -1}))
      << "the upper half is no loss";
  EXPECT_EQ(Get<std::int8_t>(integer(256), kCFNumberCharType), (Char{false, 0})) << "stored all the same";
  EXPECT_EQ(Get<std::int8_t>(integer(-129), kCFNumberCharType), (Char{false, 127}));
  using Short = Got<std::int16_t>;
  EXPECT_EQ(Get<std::int16_t>(integer(-32768), kCFNumberShortType), (Short{true, -32768}));
  EXPECT_EQ(Get<std::int16_t>(integer(65535), kCFNumberShortType), (Short{true, -1}));
  EXPECT_EQ(Get<std::int16_t>(integer(65536), kCFNumberShortType), (Short{false, 0}));
  using Long = Got<std::int32_t>;
  EXPECT_EQ(Get<std::int32_t>(integer(INT32_MIN), kCFNumberLongType), (Long{true, INT32_MIN}));
  EXPECT_EQ(Get<std::int32_t>(integer(INT32_MAX), kCFNumberLongType), (Long{true, INT32_MAX}));
  EXPECT_FALSE(Get<std::int32_t>(integer(2147483648), kCFNumberLongType).is_exact);
  EXPECT_FALSE(Get<std::int32_t>(integer(-2147483649), kCFNumberLongType).is_exact);
  using LongLong = Got<std::int64_t>;
  EXPECT_EQ(Get<std::int64_t>(UINT64_MAX, kCFNumberLongLongType), (LongLong{true, -1}));
  EXPECT_FALSE(Get<std::int32_t>(UINT64_MAX, kCFNumberLongType).is_exact);
}

TEST(Numbers, TellWhetherARealSurvives) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  using Long = Got<std::int32_t>;
  EXPECT_EQ(Get<std::int32_t>(-3.0, kCFNumberLongType), (Long{true, -3}));
  EXPECT_EQ(Get<std::int32_t>(2.5, kCFNumberLongType), (Long{false, 2}));
  EXPECT_EQ(Get<std::int32_t>(1e10, kCFNumberLongType), (Long{false, INT32_MAX}));
  EXPECT_EQ(Get<std::int32_t>(std::nan(""), kCFNumberLongType), (Long{false, 0}));
  EXPECT_FALSE(Get<std::int8_t>(200.0, kCFNumberCharType).is_exact);
  EXPECT_FALSE(Get<std::int64_t>(9223372036854775808.0, kCFNumberLongLongType).is_exact);
  EXPECT_TRUE(Get<std::int64_t>(-9223372036854775808.0, kCFNumberLongLongType).is_exact);
  EXPECT_FALSE(Get<float>(0.1, kCFNumberFloatType).is_exact);
  EXPECT_TRUE(Get<float>(0.5, kCFNumberFloatType).is_exact);
  EXPECT_TRUE(Get<float>(kInfinity, kCFNumberFloatType).is_exact);
  EXPECT_TRUE(Get<double>(0.1, kCFNumberDoubleType).is_exact);
  EXPECT_TRUE(Get<double>(-kInfinity, kCFNumberDoubleType).is_exact);
  EXPECT_FALSE(Get<double>(std::int64_t{9007199254740993}, kCFNumberDoubleType).is_exact);
  EXPECT_FALSE(Get<double>(INT64_MAX, kCFNumberDoubleType).is_exact) << "rounds up to 2^63";
  EXPECT_FALSE(Get<double>(UINT64_MAX, kCFNumberDoubleType).is_exact);
  EXPECT_TRUE(Get<double>(INT64_MIN, kCFNumberDoubleType).is_exact);
}

TEST(Numbers, AreMadeFromEveryType) {
  const auto made = [](CFNumberType type, auto value) {
    const auto number = Adopt(CFNumberCreate(nullptr, type, &value));
    double out = 0;
    EXPECT_TRUE(CFNumberGetValue(number.get(), kCFNumberDoubleType, &out));
    return std::pair(out, std::holds_alternative<double>(number.get()->value));
  };
  EXPECT_EQ(made(kCFNumberCharType, std::int8_t{-5}), std::pair(-5.0, false));
  EXPECT_EQ(made(kCFNumberShortType, std::int16_t{-500}), std::pair(-500.0, false));
  EXPECT_EQ(made(kCFNumberLongType, std::int32_t{-70000}), std::pair(-70000.0, false));
  EXPECT_EQ(made(kCFNumberLongLongType, std::int64_t{1} << 40), std::pair(1099511627776.0, false));
  EXPECT_EQ(made(kCFNumberFloatType, 1.5f), std::pair(1.5, true));
  EXPECT_EQ(made(kCFNumberDoubleType, 0.1), std::pair(0.1, true));
}

TEST(Collections, RetainWhatTheyHoldAndReleaseItWhenReplaced) {
  const std::int64_t before = cf::Object::LiveCount();
  {
    const auto array = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(array.get(), Text("old").get());
    EXPECT_EQ(cf::Object::LiveCount(), before + 2);
    CFArraySetValueAtIndex(array.get(), 0, Text("new").get());
    EXPECT_EQ(cf::Object::LiveCount(), before + 2);
    EXPECT_EQ(Utf8(static_cast<CFStringRef>(CFArrayGetValueAtIndex(array.get(), 0))), "new");

    const auto dictionary = Adopt(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks));
    CFDictionarySetValue(dictionary.get(), Text("key").get(), array.get());
    CFDictionarySetValue(dictionary.get(), Text("key").get(), kCFBooleanTrue);
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), Text("key").get()), kCFBooleanTrue);
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), Text("Key").get()), nullptr);
    CFDictionarySetValue(dictionary.get(), Text("\xC3\xA9").get(), kCFBooleanTrue);
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), Text("e\xCC\x81").get()), nullptr);
  }
  EXPECT_EQ(cf::Object::LiveCount(), before);
}

TEST(Booleans, CannotBeReleased) {
  const std::int64_t before = cf::Object::LiveCount();
  { const auto shared = Share(kCFBooleanTrue); }
  EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
  EXPECT_FALSE(CFBooleanGetValue(kCFBooleanFalse));
  EXPECT_EQ(cf::Object::LiveCount(), before) << "a constant does not count";
}

TEST(Bundle, LiesBesideTheNearestFolderOfItsNames) {
  struct {
    const char* image;
    const char* folder;
  } const rows[] = {
      {"/usr/lib/libquillmark.so.1", "/usr/share/quillmark"},
      {"/usr/lib/x86_64-linux-gnu/libquillmark.so.1", "/usr/share/quillmark"},
      {"/opt/lib/q/lib64/libquillmark.so.1", "/opt/lib/q/share/quillmark"},
      {"/home/a/build/bin/quillmark", "/home/a/build/share/quillmark"},
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
