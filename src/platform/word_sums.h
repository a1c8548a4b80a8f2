// Sums of the big-endian words of a block, kept as four sums of bytes by their place in a word, so that sums
// of neighbouring blocks can be joined at any alignment. Tests: tests/platform/byte_reader_test.cc,
// tests/analysis/collection_test.cc.
#ifndef QUILLMARK_PLATFORM_WORD_SUMS_H_
#define QUILLMARK_PLATFORM_WORD_SUMS_H_

#include <array>
#include <cstdint>

#include "platform/byte_reader.h"

namespace quillmark {

// The sums, 32-bit and wrapping, of the first, second, third and fourth bytes of a block's words.
using PlaceSums = std::array<std::uint32_t, 4>;
PlaceSums SumBytesByPlace(Bytes block);
// The sum of the words, 32-bit and wrapping; bytes that the last word lacks count as zero.
std::uint32_t WordSumOf(const PlaceSums& sums);

}  // namespace quillmark

#endif
