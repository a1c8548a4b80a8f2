#include "analysis/fond_kerning.h"

#include <algorithm>

namespace quillmark {

FondKerning::FondKerning(Bytes fond) : fond_(fond), crcs_(fond) {
  Walk();
  std::ranges::stable_sort(sub_tables_, {}, &SubTable::style);
}

// As many steps as the table counts, which are 32,768 at most. A negative pair count steps back, so
// sub-tables may overlap and come again. The walk ends early where a header passes the end, since it would
// stay there, and in front of the FOND.
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

std::span<const FondKerning::SubTable> FondKerning::Of(std::int16_t style) const {
  const auto begin = std::ranges::lower_bound(sub_tables_, style, {}, &SubTable::style);
  const auto end = std::ranges::upper_bound(sub_tables_, style, {}, &SubTable::style);
  return {begin, end};
}

std::uint32_t FondKerning::SumOfBytes(std::int16_t style) {
  std::uint32_t sum = 0;
  for (const SubTable& table : Of(style)) {
    sum += SumUpTo(table.start + SubTable::kHeaderSize + table.pairs_size) - SumUpTo(table.start);
  }
  return sum;
}

// Sums up to every kSumStep-th byte are made once, so that sub-tables that overlap cost no more than others.
std::uint32_t FondKerning::SumUpTo(std::size_t end) {
  constexpr std::size_t kSumStep = 64;
  const auto sum_of = [this](std::size_t start, std::size_t length) {
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : Slice(fond_, start, length).value_or(Bytes())) sum += byte;
    return sum;
  };
  if (sums_.empty()) {
    sums_.reserve(fond_.size() / kSumStep + 1);
    sums_.push_back(0);
    while (sums_.size() <= fond_.size() / kSumStep) {
      sums_.push_back(sums_.back() + sum_of((sums_.size() - 1) * kSumStep, kSumStep));
    }
  }
  return sums_[end / kSumStep] + sum_of(end / kSumStep * kSumStep, end % kSumStep);
}

std::uint32_t FondKerning::CrcOfPairs(std::int16_t style) {
  std::uint32_t crc = 0;
  for (const SubTable& table : Of(style)) {
    crc = crcs_.Continue(crc, table.start + SubTable::kHeaderSize, table.pairs_size);
  }
  return crc;
}

}  // namespace quillmark
