#include "platform/byte_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace quillmark {
namespace {

constexpr std::array<std::uint8_t, 7> kBlock = {0x80, 0x01, 0x02, 0x03, 0xFF, 0xFE, 0x07};
constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();

TEST(ByteReader, ReadsBigEndianFieldsInOrderAndNothingOutside) {
  ByteReader reader(kBlock);
  EXPECT_EQ(reader.U8(), 0x80);
  EXPECT_EQ(reader.U32(), 0x010203FFu);
  EXPECT_TRUE(reader.Skip(1));
  EXPECT_FALSE(reader.U16() || reader.Skip(kMax));
  EXPECT_EQ(reader.remaining(), 1u) << "a failed read moves nothing";
  EXPECT_EQ(reader.U8(), 7);
  EXPECT_FALSE(reader.U8());
}

TEST(ByteReader, ReadsAndWritesAtOffsetsOnlyInsideTheBlock) {
  EXPECT_EQ(I16At(kBlock, 0), -32767);
  EXPECT_EQ(LittleU32At(kBlock, 0), 0x03020180u);
  EXPECT_EQ(U32At(kBlock, 4), std::nullopt);
  std::array<std::uint8_t, 5> block{};
  EXPECT_TRUE(PutU32At(block, 1, 0x0A0B0C0D));
  EXPECT_EQ(U32At(block, 1), 0x0A0B0C0Du);
  EXPECT_FALSE(PutU32At(block, 2, 1) || PutU32At(block, kMax, 1));
}

TEST(ByteReader, SumsWordsWithAPaddedLastOneAndWraps) {
  EXPECT_EQ(SumBigEndianWords(kBlock), 0x80010203u + 0xFFFE0700u);  // wraps past 32 bits
  const std::vector<std::uint8_t> largest(5003, 0xFF);              // the sums of single bytes pass 16 bits
  EXPECT_EQ(SumBigEndianWords(largest), 1250u * 0xFFFFFFFFu + 0xFFFFFF00u);
}

}  // namespace
}  // namespace quillmark
