// Word sums and CRCs of the tables of one collection. The file is gone over in steps once, best while it is
// read; a table then costs the steps at its ends, and one that comes again, as faces share tables, a look-up:
// hostile collections name thousands of long tables that overlap. For one thread at a time. Tests:
// tests/analysis/collection_test.cc.
#ifndef QUILLMARK_ANALYSIS_TABLE_SUMS_H_
#define QUILLMARK_ANALYSIS_TABLE_SUMS_H_

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "analysis/crc32.h"
#include "platform/byte_reader.h"
#include "platform/word_sums.h"

namespace quillmark {

// A table as a directory of the collection has it.
struct TableRange {
  std::uint32_t offset;
  std::uint32_t length;
};

class TableSums {
 public:
  // `file` must outlive the object. Every range that is asked about must lie inside it.
  explicit TableSums(Bytes file) : file_(file), crcs_(file) {}

  // Goes over the steps of the first `end` bytes, while what was just read of them is at hand.
  void SumUpTo(std::size_t end);

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
  std::uint32_t ComputeWordSum(TableRange table);
  Crc ComputeCrc(TableRange table);

  Bytes file_;
  RangeCrc32 crcs_;
  std::vector<PlaceSums> step_sums_ = {{}};  // of the first 0, 1, 2, ... steps
  // By offset and length.
  std::unordered_map<std::uint64_t, std::uint32_t> known_sums_;
  std::unordered_map<std::uint64_t, Crc> known_crcs_;
};

}  // namespace quillmark

#endif
