#include "analysis/sfnt_data.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmark {
namespace {

// The first read of a file takes this much, which holds the directory of any usual font.
constexpr std::uint32_t kHeadSize = 4096;
constexpr std::uint32_t kBlockSize = 64 * 1024;  // a multiple of the word size

}  // namespace

SfntData::SfntData(Bytes font)
    : memory_(font.first(std::min<std::size_t>(font.size(), std::numeric_limits<std::uint32_t>::max()))),
      size_(static_cast<std::uint32_t>(memory_.size())) {}

SfntData::SfntData(RegularFile file, std::uint32_t size) : file_(std::move(file)), size_(size) {}

bool SfntData::Contains(std::uint32_t offset, std::uint32_t length) const {
  return offset <= size_ && length <= size_ - offset;
}

std::optional<Bytes> SfntData::Range(std::uint32_t offset, std::uint32_t length) const {
  if (!file_) return Slice(memory_, offset, length);
  if (!Contains(offset, length)) return std::nullopt;
  for (const Piece& piece : pieces_) {
    if (offset < piece.offset) continue;
    if (const auto found = Slice(piece.bytes, offset - piece.offset, length)) return found;
  }
  const bool in_head = std::uint64_t{offset} + length <= kHeadSize;
  Piece piece{in_head ? 0 : offset, {}};
  piece.bytes.resize(in_head ? std::min(kHeadSize, size_) : length);
  file_->ReadAt(piece.offset, piece.bytes);  // what does not come stays zero
  pieces_.push_back(std::move(piece));
  return Slice(pieces_.back().bytes, offset - pieces_.back().offset, length);
}

std::optional<std::uint32_t> SfntData::SumOfWords(std::uint32_t offset, std::uint32_t length) const {
  if (!Contains(offset, length)) return std::nullopt;
  if (!file_) return SumBigEndianWords(*Slice(memory_, offset, length));
  std::vector<std::uint8_t> block(std::min(length, kBlockSize));
  std::uint32_t sum = 0;
  for (std::uint32_t done = 0; done < length; done += static_cast<std::uint32_t>(block.size())) {
    block.resize(std::min(length - done, kBlockSize));
    const std::size_t read = file_->ReadAt(std::uint64_t{offset} + done, block);
    if (read < block.size()) std::fill(block.begin() + static_cast<std::ptrdiff_t>(read), block.end(), 0);
    sum += SumBigEndianWords(block);
  }
  return sum;
}

}  // namespace quillmark
