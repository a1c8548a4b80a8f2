#include "analysis/sfnt_data.h"

#include <gtest/gtest.h>

#include "builders/temp_folder.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kMax = 0xFFFFFFFF;

// Bytes that differ from place to place, longer than several blocks, and no multiple of 4.
std::string Pattern() {
  std::string bytes;
  for (std::uint32_t i = 0; i < 200'001; ++i) bytes += static_cast<char>(i * 31 + i / 251);
  return bytes;
}

// The tail of each table is not a multiple of 4; one is empty, and ranges cross all of them.
TEST(SfntData, FileMemoryAndTablesGiveTheSameBytesAndSums) {
  const std::string whole = Pattern();
  std::string bytes = whole.substr(0, 44);
  std::vector<SfntData::Table> tables;
  for (const std::uint32_t length : {5u, 0u, 70'001u, 1u, 130'000u}) {
    const Bytes table = AsBytes(whole).subspan(7, length);
    tables.push_back({7, length, SumBigEndianWords(table)});
    bytes += AsText(table);
    bytes.resize((bytes.size() + 3) / 4 * 4);
  }
  const auto size = static_cast<std::uint32_t>(bytes.size());
  const TempFolder folder;
  const PagedFile tables_file(RegularFile::Open(folder.Write("tables", whole)).value(), whole.size());
  std::vector<SfntData> fonts;
  fonts.emplace_back(AsBytes(bytes));
  fonts.emplace_back(RegularFile::Open(folder.Write("font", bytes)).value(), size);
  fonts.emplace_back(std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 44), tables_file, tables);
  const std::pair<std::uint32_t, std::uint32_t> ranges[] = {
      {0, size}, {size - 1, 1}, {size, 1}, {size + 1, 0},   {1, kMax},
      {kMax, 1}, {44, 8},       {43, 10},  {4095, 100'000}, {70'053, 20}};
  for (const auto& [offset, length] : ranges) {
    std::optional<std::string_view> text;
    if (std::uint64_t{offset} + length <= size) text = std::string_view(bytes).substr(offset, length);
    for (const SfntData& font : fonts) {
      SCOPED_TRACE(testing::Message() << offset << "+" << length << " of backing " << &font - fonts.data());
      const auto range = font.Range(offset, length);
      ASSERT_EQ(range.has_value(), text.has_value());
      ASSERT_EQ(font.SumOfWords(offset, length).has_value(), text.has_value());
      if (!text) continue;
      EXPECT_EQ(AsText(*range), *text);
      EXPECT_EQ(font.SumOfWords(offset, length), SumBigEndianWords(AsBytes(*text)));
    }
  }
}

TEST(SfntData, BytesThatAFileLacksAreZero) {
  const TempFolder folder;
  const SfntData font(RegularFile::Open(folder.Write("font", "\1\2\3\4\5")).value(), 70'000);
  EXPECT_EQ(AsText(*font.Range(3, 4)), std::string_view("\4\5\0\0", 4));
  EXPECT_EQ(AsText(*font.Range(69'999, 1)), std::string_view("\0", 1));
  EXPECT_EQ(font.SumOfWords(0, 70'000), 0x01020304u + 0x05000000u);
}

}  // namespace
}  // namespace quillmark
