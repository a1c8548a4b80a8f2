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

TEST(SfntData, FileAndMemoryGiveTheSameBytesAndSums) {
  const std::string bytes = Pattern();
  const auto size = static_cast<std::uint32_t>(bytes.size());
  const TempFolder folder;
  const SfntData in_file(RegularFile::Open(folder.Write("font", bytes)).value(), size);
  const SfntData in_memory(AsBytes(bytes));
  const struct {
    std::uint32_t offset, length;
    bool inside;
  } rows[] = {
      {0, 4, true},         {4090, 6, true},     {4090, 7, true},     {4095, 100'000, true}, {0, size, true},
      {size, 0, true},      {size - 1, 1, true}, {1, size - 1, true}, {3, 65'536, true},     {size, 1, false},
      {size + 1, 0, false}, {1, kMax, false},    {kMax, 1, false},    {kMax, kMax, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.offset << "+" << row.length);
    const auto from_file = in_file.Range(row.offset, row.length);
    const auto from_memory = in_memory.Range(row.offset, row.length);
    ASSERT_EQ(from_file.has_value(), row.inside);
    ASSERT_EQ(from_memory.has_value(), row.inside);
    const auto sum = in_file.SumOfWords(row.offset, row.length);
    EXPECT_EQ(sum, in_memory.SumOfWords(row.offset, row.length));
    if (!row.inside) {
      EXPECT_EQ(sum, std::nullopt);
      continue;
    }
    EXPECT_EQ(AsText(*from_file), std::string_view(bytes).substr(row.offset, row.length));
    EXPECT_EQ(AsText(*from_memory), AsText(*from_file));
    EXPECT_EQ(sum, SumBigEndianWords(*from_memory));
  }
}

TEST(SfntData, RangesOfAFileStayValidWhileMoreIsRead) {
  const std::string bytes = Pattern();
  const TempFolder folder;
  const SfntData font(RegularFile::Open(folder.Write("font", bytes)).value(), 200'001);
  const Bytes head = font.Range(0, 16).value();
  for (std::uint32_t offset = 4096; offset < 8192; offset += 16) ASSERT_TRUE(font.Range(offset, 16));
  EXPECT_EQ(AsText(head), bytes.substr(0, 16));
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
