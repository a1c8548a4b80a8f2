#include "analysis/sfnt_data.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmark {

SfntData::SfntData(Bytes font, Budget* budget)
    : budget_(budget),
      memory_(font.first(std::min<std::size_t>(font.size(), std::numeric_limits<std::uint32_t>::max()))),
      size_(static_cast<std::uint32_t>(memory_.size())) {}

SfntData::SfntData(RegularFile file, std::uint32_t size, Budget* budget)
    : budget_(budget), file_(std::move(file)), size_(size) {}

SfntData::SfntData(std::vector<std::uint8_t> directory, const PagedFile& file,
                   const std::vector<Table>& tables, Budget* budget)
    : budget_(budget), directory_(std::move(directory)), tables_file_(&file) {
  const auto add = [this](std::uint32_t length, std::optional<Table> table) {
    parts_.push_back({size_, length, table});
    size_ += (length + 3) / 4 * 4;
  };
  parts_.reserve(1 + tables.size());
  add(static_cast<std::uint32_t>(directory_.size()), std::nullopt);
  for (const Table& table : tables) add(table.length, table);
}

bool SfntData::Contains(std::uint32_t offset, std::uint32_t length) const {
  return offset <= size_ && length <= size_ - offset;
}

std::vector<SfntData::Part>::const_iterator SfntData::PartAt(std::uint32_t offset) const {
  return std::ranges::upper_bound(parts_, offset, {}, &Part::start) - 1;
}

std::optional<Bytes> SfntData::View(std::uint32_t offset, std::uint32_t length) const {
  if (file_) return std::nullopt;
  if (parts_.empty()) return Slice(memory_, offset, length);
  const auto part = PartAt(offset);
  return RangeOf(*part, offset - part->start, length);
}

std::optional<Bytes> SfntData::RangeOf(const Part& part, std::size_t offset, std::size_t length) const {
  if (!part.table) return Slice(directory_, offset, length);
  if (offset > part.length || length > part.length - offset) return std::nullopt;
  return tables_file_->Range(part.table->offset + offset, length);
}

void SfntData::Read(std::uint32_t offset, std::span<std::uint8_t> block) const {
  if (file_) {
    const std::size_t read = file_->ReadAt(offset, block);
    std::ranges::fill(block.subspan(read), std::uint8_t{0});  // what cannot be read
    return;
  }
  std::ranges::fill(block, std::uint8_t{0});
  const std::uint64_t end = std::uint64_t{offset} + block.size();
  for (auto part = PartAt(offset); part != parts_.end() && part->start < end; ++part) {
    const std::uint64_t from = std::max(offset, part->start);
    const std::uint64_t to = std::min<std::uint64_t>(end, std::uint64_t{part->start} + part->length);
    if (from >= to) continue;
    const Bytes bytes = RangeOf(*part, from - part->start, to - from).value_or(Bytes{});
    std::ranges::copy(bytes, block.subspan(from - offset).begin());
  }
}

std::optional<Bytes> SfntData::Range(std::uint32_t offset, std::uint32_t length) const {
  // The first read of a file takes this much, which holds the directory of any usual font.
  constexpr std::uint32_t kHeadSize = 4096;
  constexpr std::uint64_t kRangeSteps = 16;
  if (!Contains(offset, length)) return std::nullopt;
  Charge(budget_, kRangeSteps + pieces_.size() * Budget::kRecord);
  if (const auto view = View(offset, length)) return view;
  for (const Piece& piece : pieces_) {
    if (offset < piece.offset) continue;
    if (const auto found = Slice(piece.bytes, offset - piece.offset, length)) return found;
  }
  const bool in_head = file_ && std::uint64_t{offset} + length <= kHeadSize;
  Piece piece{in_head ? 0 : offset, {}};
  ChargeBytes(budget_, length);
  piece.bytes.resize(in_head ? std::min(kHeadSize, size_) : length);
  Read(piece.offset, piece.bytes);
  pieces_.push_back(std::move(piece));
  return Slice(pieces_.back().bytes, offset - pieces_.back().offset, length);
}

std::optional<std::uint32_t> SfntData::SumOfWords(std::uint32_t offset, std::uint32_t length) const {
  if (!Contains(offset, length)) return std::nullopt;
  if (!parts_.empty()) {
    const auto part = PartAt(offset);
    const bool is_table = part->table && offset == part->start && length == part->length;
    if (is_table && part->table->word_sum) return part->table->word_sum;
  }
  ChargeBytes(budget_, length);
  if (const auto view = View(offset, length)) return SumBigEndianWords(*view);
  constexpr std::uint32_t kBlockSize = 64 * 1024;  // a multiple of the word size
  std::vector<std::uint8_t> block(std::min(length, kBlockSize));
  std::uint32_t sum = 0;
  for (std::uint32_t done = 0; done < length; done += static_cast<std::uint32_t>(block.size())) {
    block.resize(std::min(length - done, kBlockSize));
    Read(offset + done, block);
    sum += SumBigEndianWords(block);
  }
  return sum;
}

}  // namespace quillmark
