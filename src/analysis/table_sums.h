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

// The sums of a table, the CRC over the zeros too that fill it up to a multiple of 4.
struct TableSum {
  std::uint32_t words;  // as SumBigEndianWords
  std::uint32_t crc;    // from 0
  CrcOperator combine;  // continues a running CRC over the table
};

class TableSums {
 public:
  static constexpr std::size_t kBlockSize = 1024;  // bytes

  // Takes the next bytes of the file: whole blocks, until its end.
  void Add(Bytes next);
  // `table` lies inside `file`, all of which has been added. The answer is valid until the next call.
  const TableSum& SumOf(const PagedFile& file, TableRange table);

 private:
  TableSum Compute(const PagedFile& file, TableRange table) const;

  // Of the first 0, 1, 2, ... blocks.
  std::vector<std::uint32_t> block_crcs_ = {0};
  std::vector<PlaceSums> block_sums_ = {{}};
  std::unordered_map<std::uint64_t, TableSum> cache_;  // keyed by offset and length
};

}  // namespace quillmark

#endif
