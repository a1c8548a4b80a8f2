#include "analysis/table_sums.h"

namespace quillmark {

void TableSums::Add(Bytes next) {
  for (; next.size() >= kBlockSize; next = next.subspan(kBlockSize)) {
    const Bytes block = next.first(kBlockSize);
    block_crcs_.push_back(Crc32(block_crcs_.back(), block));
    PlaceSums sums = SumBytesByPlace(block);
    for (std::size_t place = 0; place < 4; ++place) sums[place] += block_sums_.back()[place];
    block_sums_.push_back(sums);
  }
}

const TableSum& TableSums::SumOf(const PagedFile& file, TableRange table) {
  constexpr std::size_t kCacheLimit = 65536;  // more tables than real collections have; bounds the cache
  const std::uint64_t key = std::uint64_t{table.offset} << 32 | table.length;
  if (const auto found = cache_.find(key); found != cache_.end()) return found->second;
  if (cache_.size() == kCacheLimit) cache_.clear();
  return cache_.emplace(key, Compute(file, table)).first->second;
}

TableSum TableSums::Compute(const PagedFile& file, TableRange table) const {
  // The whole blocks inside the table, and the bytes before and after them.
  const std::size_t end = std::size_t{table.offset} + table.length;
  const std::size_t first = (table.offset + kBlockSize - 1) / kBlockSize;
  const std::size_t last = end / kBlockSize;
  const bool has_blocks = first < last;
  const std::size_t head_size = has_blocks ? first * kBlockSize - table.offset : table.length;
  const Bytes head = file.Range(table.offset, head_size).value_or(Bytes{});
  PlaceSums sums = SumBytesByPlace(head);
  std::uint32_t crc = Crc32(0, head);
  if (has_blocks) {
    const Bytes tail = file.Range(last * kBlockSize, end - last * kBlockSize).value_or(Bytes{});
    const PlaceSums tail_sums = SumBytesByPlace(tail);
    // Blocks are aligned to words of the file, the table's words to its offset: the sums by place are rotated
    // to match.
    for (std::size_t place = 0; place < 4; ++place) {
      const std::size_t turned = (table.offset + place) % 4;
      sums[place] += block_sums_[last][turned] - block_sums_[first][turned] + tail_sums[turned];
    }
    // With A and B the CRCs of the file up to the first and to the last block, the CRC of what lies between
    // is A combined with B: the operation is linear, so that A cancels itself out of B. For the same reason a
    // running CRC continues over it with one combination.
    crc = CombineCrc32(crc ^ block_crcs_[first], block_crcs_[last],
                       CrcOperatorFor((last - first) * kBlockSize));
    crc = Crc32(crc, tail);
  }
  static constexpr std::uint8_t kZeros[3] = {};
  const std::size_t padding = (4 - table.length % 4) % 4;
  return {WordSumOf(sums), Crc32(crc, Bytes(kZeros).first(padding)),
          CrcOperatorFor(std::size_t{table.length} + padding)};
}

}  // namespace quillmark
