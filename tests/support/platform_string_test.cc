#include "support/platform_string.h"

#include <gtest/gtest.h>

#include <array>

namespace quillmark {
namespace {

TEST(PlatformString, ReadsExactlyTheGivenBytes) {
  const struct {
    const char* bytes;
    unsigned length;
    unsigned encoding;
    std::optional<std::string> text;
  } rows[] = {
      {"Times\xC3", 5, NSUTF8StringEncoding, "Times"},
      {"Times\xC3", 6, NSUTF8StringEncoding, std::nullopt},
      {"\xEF\xBB\xBFT", 4, NSUTF8StringEncoding, "T"},
      {"ab\0cd", 5, NSMacOSRomanStringEncoding, "ab"},
      {"\x8E", 1, kDefaultCStringEncoding, "\u00E9"},
      {"a\x8E", 1, NSASCIIStringEncoding, "a"},
      {"a", 1, 99, std::nullopt},
      {"", 0, NSUTF8StringEncoding, ""},
      {nullptr, 0, NSUTF8StringEncoding, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(NSStringWithCStringLengthAndEncoding(row.bytes, row.length, row.encoding), row.text)
        << row.encoding << " " << row.length;
  }
}

TEST(PlatformString, ConvertsMacRomanInABuffer) {
  std::array<char, 6> buffer = {'\xAA', '\xAA', '\0', '#', '#', '#'};  // two trade mark signs of 3 bytes each
  std::uint32_t length = 99;
  EXPECT_TRUE(NVMacRomanToUTF8InPlace(buffer.data(), 5, &length));
  EXPECT_STREQ(buffer.data(), "\xE2\x84\xA2\xE2") << "cut to fit, inside a sequence if it comes so";
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(buffer[5], '#');
}

}  // namespace
}  // namespace quillmark
