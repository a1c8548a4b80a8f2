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

// The offset in the entry, 0 without one.
std::uint32_t OffsetOf(const std::string& font, const char* tag) {
  return FindSpecifiedTable(View(font), tag).value_or(TDirectoryEntry()).offset;
}

// Tags compare up to their first zero byte, counts are signed, and an entry must end before the font does.
TEST(SfntDirectory, LooksAtTheEntriesThatCount) {
  std::string font = SfntHeader(0x00010000, 0) + SfntDirectoryEntry(std::string("ab\0c", 4), "", 1) +
                     SfntDirectoryEntry("kern", "", 2) + SfntDirectoryEntry(std::string("\0ern", 4), "", 3);
  for (const auto& [count, last] : {std::pair{0u, 0u}, {2u, 0u}, {0x7FFFu, 3u}, {0x8000u, 0u}, {3u, 3u}}) {
    Set16(font, 4, count);
    EXPECT_EQ(OffsetOf(font + "x", ""), last) << count;
  }
  EXPECT_EQ(OffsetOf(font, "ab"), 1u);
  EXPECT_EQ(OffsetOf(font, "abc"), 0u);
  for (std::size_t size = 0; size <= font.size(); ++size) {
    EXPECT_EQ(OffsetOf(font.substr(0, size), "kern"), size > 44 ? 2u : 0u) << size;
    EXPECT_EQ(OffsetOf(font.substr(0, size), ""), 0u) << size;
  }
}

TEST(SfntDirectory, ValidationWrapsAt32Bits) {
  const std::string font(100, '\0');
  for (const auto& [offset, length, valid] :
       {std::tuple{60u, 40u, true}, {60, 41, false}, {101, 0, false}, {0xFFFFFFF0, 0x20, true}}) {
    EXPECT_EQ(ValidateDirectoryEntry(TDirectoryEntry{0, 0, offset, length}, View(font)), valid) << offset;
  }
}

TEST(SfntDirectory, PlatformNeedsTheTablesOfBothSystems) {
  const auto platform = [](const std::string& font) {
    OmString text = "unset";
    const bool decided = GetPlatformTTF(View(font), &text);
    return (decided ? "" : "undecided ") + text.str();
  };
  const SfntBuilder sound = SfntBuilder::CrossPlatform();
  const std::string font = sound.Build();
  EXPECT_EQ(platform(SfntBuilder(sound).Version(FourCharCode("OTTO")).Build()), "crossplatform");
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
  EXPECT_EQ(platform(font.substr(0, 5)), "mac");
}

TEST(SfntDirectory, KerningChecksumSumsTheFirstOfThreeTables) {
  const std::string words("\xFF\xFF\xFF\xFF\0\0\0\x02\0\0\1\0", 12);  // sums, wrapping, to 101
  constexpr std::uint32_t kUntouched = 77;
  const auto with = [&](const char* tag, const char* next) {
    return SfntBuilder().Table(tag, words).Table(next, "behind").Build();
  };
  const std::string font = with("kern", "last");
  const auto spoiled = [&font](std::uint32_t offset, std::uint32_t length) {
    std::string bytes = font;
    Set32(bytes, EntryPosition(font, "kern") + 4, 0xCAFE);
    Set32(bytes, EntryPosition(font, "kern") + 8, offset);
    Set32(bytes, EntryPosition(font, "kern") + 12, length);
    return bytes;
  };
  const struct {
    const char* what;
    std::string font;
    std::uint32_t checksum;
  } rows[] = {
      {"kern", with("kern", "GPOS"), 0x101},
      {"GPOS", with("GPOS", "glyf"), 0x101},
      {"glyf", with("glyf", "last"), 0x101},
      {"none of them", with("last", "none"), kUntouched},
      {"no multiple of 4: the directory's", spoiled(44, 10), 0xCAFE},
      {"a table that ends the font", SfntBuilder().Table("kern", words).Build(), 0},
      {"at offset 0", spoiled(0, 12), 0},
      {"a sum that wraps", spoiled(0xFFFFFFF0, 0x20), 0},
      {"a length that wraps", spoiled(4, 0xFFFFFFFC), 0},
      {"outside", spoiled(0x10000, 12), kUntouched},
  };
  for (const auto& row : rows) {
    std::uint32_t value = kUntouched;
    EXPECT_EQ(GetTrueTypeKerningTableChecksum(View(row.font), &value), row.checksum != kUntouched);
    EXPECT_EQ(value, row.checksum) << row.what;
  }
}

}  // namespace
}  // namespace quillmark
