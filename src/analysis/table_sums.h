// Word sums and CRCs of the tables of one collection. The file is summed once in blocks of fixed size. A
// table then costs only the partial blocks at its ends, and a table that several faces share is answered from
// a cache: hostile collections name thousands of long tables that overlap. For one thread at a time. Tests:
// tests/analysis/collection_test.cc.
#ifndef QUILLMARK_ANALYSIS_TABLE_SUMS_H_
#define QUILLMARK_ANALYSIS_TABLE_SUMS_H_

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/crc32.h"
#include "platform/files/paged_file.h"
#include "platform/word_sums.h"

namespace quillmark {

// A table as a directory of the collection has it.
struct TableRange {
  std::uint32_t offset;
  std::uint32_t length;
};

class TableSums {
 public:
  static constexpr std::size_t kBlockSize = BlockCrcs::kBlockSize;  // bytes

  // Takes the next bytes of the file: whole blocks, until its end.
  void Add(Bytes next);

  // `table` lies inside `file`, all of which has been added. The sum is that of SumBigEndianWords.
  std::uint32_t WordSum(const PagedFile& file, TableRange table);
  // Continues `crc` over the table and the zeros that fill it up to a multiple of 4.
  std::uint32_t ContinueCrc(const PagedFile& file, std::uint32_t crc, TableRange table);

 private:
  struct Crc {
    std::uint32_t value;
    CrcOperator combine;
  };
  std::uint32_t ComputeWordSum(const PagedFile& file, TableRange table) const;
  Crc ComputeCrc(const PagedFile& file, TableRange table) const;

  BlockCrcs block_crcs_;
  std::vector<PlaceSums> block_sums_ = {{}};  // of the first 0, 1, 2, ... blocks
  // Keyed by offset and length.
  std::unordered_map<std::uint64_t, std::uint32_t> sum_cache_;
  std::unordered_map<std::uint64_t, Crc> crc_cache_;
};

}  // namespace quillmark

#endif
