#include "support/platform_string.h"

#include <gtest/gtest.h>

#include <tuple>

namespace quillmark {
namespace {

TEST(PlatformString, ReadsExactlyTheGivenBytes) {
  const std::tuple<const char*, unsigned, unsigned, std::optional<std::string>> rows[] = {
      {"Times\xC3", 5, NSUTF8StringEncoding, "Times"},
      {"Times\xC3", 6, NSUTF8StringEncoding, std::nullopt},
      {"\xEF\xBB\xBFT", 4, NSUTF8StringEncoding, "T"},
      {"ab\0cd", 5, NSMacOSRomanStringEncoding, "ab"},
      {"\x8E", 1, kDefaultCStringEncoding, "\u00E9"},
      {"a\x8E", 1, NSASCIIStringEncoding, "a"},
      {"a", 1, 99, std::nullopt},
      {nullptr, 0, NSUTF8StringEncoding, std::nullopt}};
  for (const auto& [bytes, length, encoding, text] : rows) {
    EXPECT_EQ(NSStringWithCStringLengthAndEncoding(bytes, length, encoding), text) << encoding << length;
  }
}

TEST(PlatformString, ConvertsMacRomanInABuffer) {
  char buffer[] = "\xAA\xAA\0###";  // two trade mark signs of 3 bytes each
  std::uint32_t length = 99;
  EXPECT_TRUE(NVMacRomanToUTF8InPlace(buffer, 5, &length));
  EXPECT_STREQ(buffer, "\xE2\x84\xA2\xE2") << "cut to fit, inside a sequence if it comes so";
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(buffer[5], '#');
}

}  // namespace
}  // namespace quillmark
