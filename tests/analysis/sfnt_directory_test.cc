#include "analysis/sfnt_directory.h"

#include <gtest/gtest.h>

#include <string_view>
#include <tuple>

#include "builders/big_endian.h"
#include "builders/sfnt_builder.h"

namespace quillmark {
namespace {

using big_endian::Set16;
using big_endian::Set32;

SfntData View(const std::string& font) { return SfntData(AsBytes(font)); }

std::optional<std::uint32_t> OffsetOf(const std::string& font, const char* tag) {
  const auto entry = FindSpecifiedTable(View(font), tag);
  return entry ? std::optional(entry->offset) : std::nullopt;
}

TEST(SfntDirectory, LooksOnlyAtEntriesThatEndBeforeTheBlockDoes) {
  const std::string font =
      SfntHeader(0x00010000, 2) + SfntDirectoryEntry("cmap", "", 1) + SfntDirectoryEntry("name", "", 2) + "x";
  EXPECT_EQ(OffsetOf(font, "name"), 2u);
  EXPECT_EQ(OffsetOf(font.substr(0, font.size() - 1), "name"), std::nullopt);
  EXPECT_EQ(OffsetOf(font.substr(0, font.size() - 1), "cmap"), 1u);
  for (std::size_t size = 0; size <= 28; ++size)
    EXPECT_EQ(OffsetOf(font.substr(0, size), "cmap"), std::nullopt);
}

TEST(SfntDirectory, CountsAreSigned) {
  std::string font = SfntHeader(0x00010000, 0) + SfntDirectoryEntry("cmap", "", 1) + "x";
  for (const auto& [count, found] :
       {std::pair{0u, false}, {1u, true}, {0x7FFFu, true}, {0x8000u, false}, {0xFFFFu, false}}) {
    Set16(font, 4, count);
    EXPECT_EQ(OffsetOf(font, "cmap").has_value(), found) << count;
  }
}

TEST(SfntDirectory, TagsCompareUpToTheirFirstZeroByte) {
  const std::string font = SfntHeader(0x00010000, 3) + SfntDirectoryEntry(std::string("ab\0c", 4), "", 1) +
                           SfntDirectoryEntry("kern", "", 2) +
                           SfntDirectoryEntry(std::string("\0ern", 4), "", 3) + "x";
  EXPECT_EQ(OffsetOf(font, "ab"), 1u);
  EXPECT_EQ(OffsetOf(font, "abc"), std::nullopt);
  EXPECT_EQ(OffsetOf(font, "kern"), 2u);
  EXPECT_EQ(OffsetOf(font, ""), 3u);
}

TEST(SfntDirectory, ValidationWrapsAt32Bits) {
  const std::string font(100, '\0');
  const auto valid = [&](std::uint32_t offset, std::uint32_t length) {
    return ValidateDirectoryEntry(TDirectoryEntry{0, 0, offset, length}, View(font));
  };
  EXPECT_TRUE(valid(60, 40));
  EXPECT_FALSE(valid(60, 41));
  EXPECT_FALSE(valid(101, 0));
  EXPECT_TRUE(valid(0xFFFFFFF0, 0x20));
}

TEST(SfntDirectory, PlatformNeedsTheTablesOfBothSystems) {
  const auto platform = [](const std::string& font) {
    OmString text = "unset";
    const bool decided = GetPlatformTTF(View(font), &text);
    return std::string(decided ? "" : "undecided ") + text.str();
  };
  const SfntBuilder sound = SfntBuilder::CrossPlatform();
  const std::string font = sound.Build();
  EXPECT_EQ(platform(font), "crossplatform");
  EXPECT_EQ(platform(SfntBuilder(sound).Version(FourCharCode("true")).Build()), "mac");
  for (const char* tag : {"cmap", "name", "post", "maxp", "head", "hhea", "hmtx", "OS/2", "kern"}) {
    const bool needed = std::string_view("OS/2 kern").find(tag) == std::string_view::npos;
    const SfntBuilder with = needed ? sound : SfntBuilder(sound).Table(tag, "1234");
    EXPECT_EQ(platform(SfntBuilder(with).RemoveTable(tag).Build()), needed ? "mac" : "crossplatform") << tag;
    std::string spoiled = with.Build();
    Set32(spoiled, EntryPosition(spoiled, tag) + 12, 0x10000);
    EXPECT_EQ(platform(spoiled), "mac") << tag;
  }
  EXPECT_EQ(platform(font.substr(0, 4)), "undecided unset");
}

TEST(SfntDirectory, KerningChecksumSumsTheFirstOfThreeTables) {
  const std::string words("\xFF\xFF\xFF\xFF\0\0\0\x02\0\0\1\0", 12);  // sums, wrapping, to 101
  constexpr std::uint32_t kSum = 0x101;
  constexpr std::uint32_t kUntouched = 77;
  const auto checksum = [](const std::string& font) {
    std::uint32_t value = kUntouched;
    const bool valid = GetTrueTypeKerningTableChecksum(View(font), &value);
    return valid ? value : kUntouched;
  };
  const auto with = [&](const char* tag, const std::string& table) {
    return SfntBuilder().Table(tag, table).Table("last", "behind");  // without which it would end the font
  };
  EXPECT_EQ(checksum(with("kern", words).Table("GPOS", "abcd").Build()), kSum);
  EXPECT_EQ(checksum(with("GPOS", words).Table("glyf", "abcd").Build()), kSum);
  EXPECT_EQ(checksum(with("glyf", words).Build()), kSum);

  std::string stored = with("kern", words.substr(0, 10)).Build();
  Set32(stored, EntryPosition(stored, "kern") + 4, 0xCAFE);
  EXPECT_EQ(checksum(stored), 0xCAFEu) << "of a length that is no multiple of 4: the directory's";
  EXPECT_EQ(checksum(SfntBuilder().Table("kern", words).Build()), 0u) << "a table that ends the font";

  const std::string font = with("kern", words).Table("GPOS", words).Build();
  for (const auto& [offset, length, expected] :
       {std::tuple{0u, 12u, 0u}, {0xFFFFFFF0, 0x20, 0}, {4, 0xFFFFFFFC, 0}, {0x10000, 12, kUntouched}}) {
    std::string spoiled = font;
    Set32(spoiled, EntryPosition(spoiled, "kern") + 8, offset);
    Set32(spoiled, EntryPosition(spoiled, "kern") + 12, length);
    EXPECT_EQ(checksum(spoiled), expected) << offset;
  }
}

}  // namespace
}  // namespace quillmark
