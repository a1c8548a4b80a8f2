// Word sums and CRCs of the tables of one collection. Faces share tables, so that a range that comes again
// costs a look-up. Hostile ones name thousands of long ranges that overlap: once as many bytes are summed as
// the file has, a new range costs no more than a few steps of kStep bytes. For one thread at a time. Tests:
// tests/analysis/collection_test.cc.
#ifndef QUILLMARK_ANALYSIS_TABLE_SUMS_H_
#define QUILLMARK_ANALYSIS_TABLE_SUMS_H_

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "analysis/crc32.h"
#include "platform/byte_reader.h"

namespace quillmark {

// A table as a directory of the collection has it.
struct TableRange {
  std::uint32_t offset;
  std::uint32_t length;
};

class TableSums {
 public:
  // `file` must outlive the object. Every range that is asked about must lie inside it.
  explicit TableSums(Bytes file) : file_(file), sum_left_(file.size()), crc_left_(file.size()), crcs_(file) {}

  // As SumBigEndianWords.
  std::uint32_t WordSum(TableRange table);
  // Continues `crc` over the table and the zeros that fill it up to a multiple of 4.
  std::uint32_t ContinueCrc(std::uint32_t crc, TableRange table);

 private:
  static constexpr std::size_t kStep = 1024;

  struct Crc {
    std::uint32_t value;
    CrcOperator combine;
  };
  // Whether the table can be gone over whole. Tables that do not overlap are no more than the file together.
  static bool Spend(std::size_t& left, TableRange table);
  std::uint32_t ComputeWordSum(TableRange table);
  Crc ComputeCrc(TableRange table);

  Bytes file_;
  std::size_t sum_left_;  // bytes that may still be gone over
  std::size_t crc_left_;
  RangeCrc32 crcs_;
  // For words that begin at 0, 1, 2 and 3: the sums of the first 0, 1, 2, ... steps; made when first needed.
  std::array<std::vector<std::uint32_t>, 4> step_sums_;
  // By offset and length.
  std::unordered_map<std::uint64_t, std::uint32_t> known_sums_;
  std::unordered_map<std::uint64_t, Crc> known_crcs_;
};

}  // namespace quillmark

#endif
