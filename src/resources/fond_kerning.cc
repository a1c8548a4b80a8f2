#include "resources/fond_kerning.h"

#include <algorithm>

#include "platform/crc32.h"

namespace quillmark {

FondKerning::FondKerning(Bytes fond, Budget* budget) : fond_(fond), budget_(budget) {
  const WorkScope work(budget, Work::kKerning);
  Walk();
  Charge(budget_, sub_tables_.size() * Budget::kSortedRecord);
  std::ranges::stable_sort(sub_tables_, {}, &SubTable::style);
}

// Takes as many steps as the table states sub-tables, 32,768 at most. A negative pair count steps back, so
// sub-tables may overlap and be read more than once. The walk ends early where a header passes the end, since
// it would stay there, and in front of the FOND.
void FondKerning::Walk() {
  constexpr std::size_t kSmallestFond = 52;
  constexpr std::size_t kTableOffset = 20;
  constexpr std::int64_t kPairSize = 4;
  constexpr auto kHeaderSize = static_cast<std::int64_t>(SubTable::kHeaderSize);

  const std::uint32_t table = U32At(fond_, kTableOffset).value_or(0);
  const auto last_index = I16At(fond_, table);
  if (fond_.size() < kSmallestFond || table == 0 || !last_index) return;
  const auto size = static_cast<std::int64_t>(fond_.size());
  std::int64_t position = std::int64_t{table} + 2;
  ChargeRecords(budget_, static_cast<std::uint64_t>(std::max(*last_index + 1, 0)));
  for (int index = 0; index < *last_index + 1; ++index) {
    // A header that ends exactly with the FOND is not read either.
    if (position < 0 || position + kHeaderSize >= size) break;
    SubTable found;
    found.start = static_cast<std::size_t>(position);
    found.style = I16At(fond_, found.start).value_or(0);
    const std::int64_t pairs_size = kPairSize * I16At(fond_, found.start + 2).value_or(0);
    position += kHeaderSize + pairs_size;
    if (pairs_size > 0 && position <= size) found.pairs_size = static_cast<std::size_t>(pairs_size);
    sub_tables_.push_back(found);
  }
}

std::span<const FondKerning::SubTable> FondKerning::SubTablesOf(std::int16_t style) const {
  const auto begin = std::ranges::lower_bound(sub_tables_, style, {}, &SubTable::style);
  const auto end = std::ranges::upper_bound(sub_tables_, style, {}, &SubTable::style);
  ChargeRecords(budget_, static_cast<std::uint64_t>(end - begin));
  return {begin, end};
}

Bytes FondKerning::Range(std::size_t start, std::size_t length) const {
  ChargeBytes(budget_, length);
  return Slice(fond_, start, length).value_or(Bytes());
}

std::uint32_t FondKerning::SumOfBytes(std::int16_t style) const {
  const WorkScope work(budget_, Work::kKerning);
  std::uint32_t sum = 0;
  for (const SubTable& table : SubTablesOf(style)) {
    for (const std::uint8_t byte : Range(table.start, SubTable::kHeaderSize + table.pairs_size)) sum += byte;
  }
  return sum;
}

std::uint32_t FondKerning::CrcOfPairs(std::int16_t style) const {
  const WorkScope work(budget_, Work::kKerning);
  std::uint32_t crc = 0;
  for (const SubTable& table : SubTablesOf(style)) {
    crc = Crc32(crc, Range(table.start + SubTable::kHeaderSize, table.pairs_size));
  }
  return crc;
}

}  // namespace quillmark
