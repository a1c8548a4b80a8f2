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

bool TableSums::Spend(std::size_t& left, TableRange table) {
  if (table.length > left) return false;
  left -= table.length;
  return true;
}

std::uint32_t TableSums::ComputeWordSum(TableRange table) {
  if (Spend(sum_left_, table)) return SumBigEndianWords(file_.subspan(table.offset, table.length));
  const std::size_t shift = table.offset % 4;
  const Bytes block = file_.subspan(shift);  // in which the table's words are aligned
  const std::size_t start = table.offset - shift;
  const std::size_t end = start + table.length;
  const std::size_t first = (start + kStep - 1) / kStep;
  const std::size_t last = end / kStep;
  if (first >= last) return SumBigEndianWords(block.subspan(start, table.length));
  std::vector<std::uint32_t>& sums = step_sums_[shift];
  if (sums.empty()) {
    sums.push_back(0);
    for (std::size_t step_end = kStep; step_end <= block.size(); step_end += kStep) {
      sums.push_back(sums.back() + SumBigEndianWords(block.subspan(step_end - kStep, kStep)));
    }
  }
  return SumBigEndianWords(block.subspan(start, first * kStep - start)) + sums[last] - sums[first] +
         SumBigEndianWords(block.subspan(last * kStep, end - last * kStep));
}

TableSums::Crc TableSums::ComputeCrc(TableRange table) {
  static constexpr std::uint8_t kZeros[3] = {};
  const std::size_t padding = (4 - table.length % 4) % 4;
  const std::uint32_t crc = Spend(crc_left_, table) ? Crc32(0, file_.subspan(table.offset, table.length))
                                                    : crcs_.Continue(0, table.offset, table.length);
  return {Crc32(crc, Bytes(kZeros).first(padding)), CrcOperatorFor(std::size_t{table.length} + padding)};
}

}  // namespace quillmark
