#include "analysis/table_sums.h"

namespace quillmark {
namespace {

// More tables than real collections have; bounds each cache.
constexpr std::size_t kCacheLimit = 65536;

// The cached answer for the table; `compute` makes it when it is missing.
template <typename Answer, typename Compute>
Answer FindOrCompute(std::unordered_map<std::uint64_t, Answer>& cache, TableRange table, Compute compute) {
  const std::uint64_t key = std::uint64_t{table.offset} << 32 | table.length;
  if (const auto found = cache.find(key); found != cache.end()) return found->second;
  if (cache.size() == kCacheLimit) cache.clear();
  return cache.emplace(key, compute(table)).first->second;
}

// The whole blocks inside a table, and the bytes before (`head`) and after them (`tail`). Without a whole
// block all bytes are in `head`.
struct TableEnds {
  TableEnds(const PagedFile& file, TableRange table) {
    constexpr std::size_t kBlockSize = TableSums::kBlockSize;
    const std::size_t end = std::size_t{table.offset} + table.length;
    first = (table.offset + kBlockSize - 1) / kBlockSize;
    last = end / kBlockSize;
    has_blocks = first < last;
    head = file.Range(table.offset, has_blocks ? first * kBlockSize - table.offset : table.length)
               .value_or(Bytes{});
    if (has_blocks) tail = file.Range(last * kBlockSize, end - last * kBlockSize).value_or(Bytes{});
  }

  std::size_t first, last;
  bool has_blocks;
  Bytes head, tail;
};

}  // namespace

std::uint32_t TableSums::WordSum(const PagedFile& file, TableRange table) {
  return FindOrCompute(sum_cache_, table, [&](TableRange range) { return ComputeWordSum(file, range); });
}

std::uint32_t TableSums::ContinueCrc(const PagedFile& file, std::uint32_t crc, TableRange table) {
  const Crc summed =
      FindOrCompute(crc_cache_, table, [&](TableRange range) { return ComputeCrc(file, range); });
  return CombineCrc32(crc, summed.value, summed.combine);
}

void TableSums::Add(Bytes next) {
  for (; next.size() >= kBlockSize; next = next.subspan(kBlockSize)) {
    const Bytes block = next.first(kBlockSize);
    block_crcs_.Add(block);
    PlaceSums sums = SumBytesByPlace(block);
    for (std::size_t place = 0; place < 4; ++place) sums[place] += block_sums_.back()[place];
    block_sums_.push_back(sums);
  }
}

std::uint32_t TableSums::ComputeWordSum(const PagedFile& file, TableRange table) const {
  const TableEnds ends(file, table);
  if (!ends.has_blocks) return SumBigEndianWords(ends.head);
  PlaceSums sums = SumBytesByPlace(ends.head);
  const PlaceSums tail = SumBytesByPlace(ends.tail);
  // Blocks are aligned to words of the file, the table's words to its offset: the sums by place are rotated
  // to match.
  for (std::size_t place = 0; place < 4; ++place) {
    const std::size_t turned = (table.offset + place) % 4;
    sums[place] += block_sums_[ends.last][turned] - block_sums_[ends.first][turned] + tail[turned];
  }
  return WordSumOf(sums);
}

TableSums::Crc TableSums::ComputeCrc(const PagedFile& file, TableRange table) const {
  static constexpr std::uint8_t kZeros[3] = {};
  const std::size_t padding = (4 - table.length % 4) % 4;
  const TableEnds ends(file, table);
  std::uint32_t crc = Crc32(0, ends.head);
  if (ends.has_blocks) crc = Crc32(block_crcs_.Continue(crc, ends.first, ends.last), ends.tail);
  return {Crc32(crc, Bytes(kZeros).first(padding)), CrcOperatorFor(std::size_t{table.length} + padding)};
}

}  // namespace quillmark
