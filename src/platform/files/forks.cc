#include "platform/files/forks.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillmark {

Fork::Fork(RegularFile file) : file_(std::move(file)), length_(file_->size()) {}

Fork::Fork(std::shared_ptr<const std::string> bytes) : bytes_(std::move(bytes)), length_(bytes_->size()) {}

std::size_t Fork::ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const {
  if (offset >= length_) return 0;
  const std::span<std::uint8_t> wanted = out.first(std::min<std::uint64_t>(out.size(), length_ - offset));
  if (file_) return file_->ReadAt(start_ + offset, wanted);
  const auto held = Slice(AsBytes(*bytes_), start_ + offset, wanted.size());
  if (!held) return 0;
  std::copy(held->begin(), held->end(), wanted.begin());
  return wanted.size();
}

Bytes Fork::BlockAt(std::uint64_t offset) const {
  if (offset >= length_) return {};
  const Bytes block = file_ ? file_->BlockAt(start_ + offset) : AsBytes(*bytes_).subspan(start_ + offset);
  return block.first(std::min<std::uint64_t>(block.size(), length_ - offset));
}

std::optional<Fork> Fork::Part(std::uint64_t offset, std::uint64_t length) const {
  if (offset > length_ || length > length_ - offset) return std::nullopt;
  Fork part = *this;
  part.start_ += offset;
  part.length_ = length;
  return part;
}

bool Fork::Copy(std::uint64_t offset, std::uint64_t length, const ByteSink& sink) const {
  constexpr std::uint64_t kBlock = 1 << 16;
  std::vector<std::uint8_t> block(std::min(length, kBlock));
  while (length > 0) {
    const auto piece = std::span(block).first(std::min<std::uint64_t>(length, block.size()));
    if (ReadAt(offset, piece) != piece.size() || !sink(piece)) return false;
    offset += piece.size();
    length -= piece.size();
  }
  return true;
}

}  // namespace quillmark
