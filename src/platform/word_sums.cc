#include "platform/word_sums.h"

#include <algorithm>

namespace quillmark {
namespace {

// With this many words the sum of their bytes at one place stays below 1 << 16.
constexpr std::size_t kWordsAtOnce = 256;

// Sums two places in the two halves of one number, without swapping bytes, so that compilers can vectorise
// the loop.
PlaceSums SumFewWords(Bytes words) {
  std::uint32_t even = 0;
  std::uint32_t odd = 0;
  for (std::size_t i = 0; i < words.size(); i += 4) {
    const auto word = byte_order::Load<std::uint32_t>(words.subspan(i, 4));
    even += word & 0x00FF00FFu;
    odd += (word >> 8) & 0x00FF00FFu;
  }
  const PlaceSums from_lowest = {even & 0xFFFFu, odd & 0xFFFFu, even >> 16, odd >> 16};
  if (byte_order::kLittleEndianHost) return from_lowest;
  return {from_lowest[3], from_lowest[2], from_lowest[1], from_lowest[0]};
}

}  // namespace

PlaceSums SumBytesByPlace(Bytes block) {
  PlaceSums sums = {};
  const std::size_t whole = block.size() / 4 * 4;
  for (std::size_t done = 0; done < whole; done += 4 * kWordsAtOnce) {
    const PlaceSums few = SumFewWords(block.subspan(done, std::min(whole - done, 4 * kWordsAtOnce)));
    for (std::size_t place = 0; place < 4; ++place) sums[place] += few[place];
  }
  for (std::size_t i = whole; i < block.size(); ++i) sums[i - whole] += block[i];
  return sums;
}

std::uint32_t WordSumOf(const PlaceSums& sums) {
  return (sums[0] << 24) + (sums[1] << 16) + (sums[2] << 8) + sums[3];
}

std::uint32_t SumBigEndianWords(Bytes block) { return WordSumOf(SumBytesByPlace(block)); }

}  // namespace quillmark
