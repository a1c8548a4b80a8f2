#include "analysis/table_sums.h"

namespace quillmark {
namespace {

// More distinct tables than any collection has that is not made to exhaust memory.
constexpr std::size_t kMaxKnown = 65536;

// The remembered answer for the table, or else the one that `compute` gives.
template <typename Answer, typename Compute>
Answer Remember(std::unordered_map<std::uint64_t, Answer>& known, TableRange table, Compute compute) {
  const std::uint64_t key = std::uint64_t{table.offset} << 32 | table.length;
  if (const auto found = known.find(key); found != known.end()) return found->second;
  if (known.size() == kMaxKnown) known.clear();
  return known.emplace(key, compute(table)).first->second;
}

}  // namespace

std::uint32_t TableSums::WordSum(TableRange table) {
  return Remember(known_sums_, table, [this](TableRange range) { return ComputeWordSum(range); });
}

std::uint32_t TableSums::ContinueCrc(std::uint32_t crc, TableRange table) {
  const Crc known = Remember(known_crcs_, table, [this](TableRange range) { return ComputeCrc(range); });
  return CombineCrc32(crc, known.value, known.combine);
}

void TableSums::SumUpTo(std::size_t end) {
  for (std::size_t done = (step_sums_.size() - 1) * kStep; done + kStep <= end; done += kStep) {
    PlaceSums sums = SumBytesByPlace(file_.subspan(done, kStep));
    for (std::size_t place = 0; place < 4; ++place) sums[place] += step_sums_.back()[place];
    step_sums_.push_back(sums);
  }
  crcs_.SumUpTo(end);
}

std::uint32_t TableSums::ComputeWordSum(TableRange table) {
  const Bytes bytes = file_.subspan(table.offset, table.length);
  const std::size_t end = std::size_t{table.offset} + table.length;
  const std::size_t first = (table.offset + kStep - 1) / kStep;
  const std::size_t last = end / kStep;
  if (first >= last) return SumBigEndianWords(bytes);
  SumUpTo(end);
  PlaceSums sums = SumBytesByPlace(bytes.first(first * kStep - table.offset));
  const PlaceSums tail = SumBytesByPlace(bytes.last(end - last * kStep));
  // Steps begin with a word of the file, whose places are the table's turned by its offset.
  for (std::size_t place = 0; place < 4; ++place) {
    const std::size_t turned = (table.offset + place) % 4;
    sums[place] += step_sums_[last][turned] - step_sums_[first][turned] + tail[turned];
  }
  return WordSumOf(sums);
}

TableSums::Crc TableSums::ComputeCrc(TableRange table) {
  static constexpr std::uint8_t kZeros[3] = {};
  const std::size_t padding = (4 - table.length % 4) % 4;
  const std::uint32_t crc = crcs_.Continue(0, table.offset, table.length);
  return {Crc32(crc, Bytes(kZeros).first(padding)), CrcOperatorFor(std::size_t{table.length} + padding)};
}

}  // namespace quillmark
