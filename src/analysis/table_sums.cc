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

// The whole steps inside a table, and the bytes before (`head`) and behind them (`tail`). Without a whole
// step all bytes are in `head`.
struct TableEnds {
  TableEnds(const PagedFile& file, TableRange table) {
    constexpr std::size_t kStep = TableSums::kStep;
    const std::size_t end = std::size_t{table.offset} + table.length;
    first = (table.offset + kStep - 1) / kStep;
    last = end / kStep;
    has_steps = first < last;
    head =
        file.Range(table.offset, has_steps ? first * kStep - table.offset : table.length).value_or(Bytes{});
    if (has_steps) tail = file.Range(last * kStep, end - last * kStep).value_or(Bytes{});
  }

  std::size_t first, last;
  bool has_steps;
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
  for (; next.size() >= kStep; next = next.subspan(kStep)) {
    const Bytes step = next.first(kStep);
    step_crcs_.Add(step);
    PlaceSums sums = SumBytesByPlace(step);
    for (std::size_t place = 0; place < 4; ++place) sums[place] += step_sums_.back()[place];
    step_sums_.push_back(sums);
  }
}

std::uint32_t TableSums::ComputeWordSum(const PagedFile& file, TableRange table) const {
  const TableEnds ends(file, table);
  if (!ends.has_steps) return SumBigEndianWords(ends.head);
  PlaceSums sums = SumBytesByPlace(ends.head);
  const PlaceSums tail = SumBytesByPlace(ends.tail);
  // Steps are aligned to words of the file, the table's words to its offset: the sums by place are rotated to
  // match.
  for (std::size_t place = 0; place < 4; ++place) {
    const std::size_t turned = (table.offset + place) % 4;
    sums[place] += step_sums_[ends.last][turned] - step_sums_[ends.first][turned] + tail[turned];
  }
  return WordSumOf(sums);
}

TableSums::Crc TableSums::ComputeCrc(const PagedFile& file, TableRange table) const {
  static constexpr std::uint8_t kZeros[3] = {};
  const std::size_t padding = (4 - table.length % 4) % 4;
  const TableEnds ends(file, table);
  std::uint32_t crc = Crc32(0, ends.head);
  if (ends.has_steps) crc = Crc32(step_crcs_.Continue(crc, ends.first, ends.last), ends.tail);
  return {Crc32(crc, Bytes(kZeros).first(padding)), CrcOperatorFor(std::size_t{table.length} + padding)};
}

}  // namespace quillmark
