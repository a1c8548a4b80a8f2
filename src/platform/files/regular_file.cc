#include "platform/files/regular_file.h"

#include <algorithm>
#include <utility>

namespace quillmark {

// The open file, and the block of bytes that was read last.
class RegularFile::Contents {
 public:
  Contents(std::unique_ptr<OpenedFile> file, FileAccess& access)
      : file_(std::move(file)),
        budget_(access.budget()),
        block_(access.TakeBlock()),
        first_read_(access.reads() == FileAccess::Reads::kWhole ? block_->size() : kFewBytes) {}

  std::uint64_t size() const { return file_->size(); }

  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (block_size_ == 0 && offset < first_read_ && offset < size()) LoadBlock(0, first_read_);
    const auto held =
        offset < start_ ? std::nullopt : Slice(BlockBytes().first(read_size_), offset - start_, out.size());
    if (!held) return ReadFile(offset, out);
    Charge(budget_, 1 + out.size() / Budget::kBytesPerStep);
    std::ranges::copy(*held, out.begin());
    return out.size();
  }

  Bytes BlockAt(std::uint64_t offset) {
    if (offset >= size()) return {};
    if (offset < start_ || offset - start_ >= block_size_) LoadBlock(offset, block_->size());
    return BlockBytes().subspan(offset - start_);
  }

 private:
  static constexpr std::size_t kFewBytes = 4096;  // a page, which holds a font's directory

  Bytes BlockBytes() const { return Bytes(*block_).first(block_size_); }

  void LoadBlock(std::uint64_t offset, std::size_t length) {
    start_ = offset;
    block_size_ = static_cast<std::size_t>(std::min<std::uint64_t>(length, size() - offset));
    const std::span<std::uint8_t> wanted = std::span(*block_).first(block_size_);
    read_size_ = ReadFile(offset, wanted);
    std::ranges::fill(wanted.subspan(read_size_), std::uint8_t{0});
  }

  // Every byte that is read adds to the budget, up to the size of the file.
  std::size_t ReadFile(std::uint64_t offset, std::span<std::uint8_t> out) {
    Charge(budget_, Budget::kFileRead);
    const std::size_t length = file_->ReadAt(offset, out).length;
    if (budget_ == nullptr) return length;
    const std::uint64_t paid = std::min<std::uint64_t>(length, size() - std::min(size(), paid_for_));
    paid_for_ += paid;
    budget_->Allow(paid);
    budget_->ChargeBytes(out.size());
    return length;
  }

  const std::unique_ptr<OpenedFile> file_;
  Budget* const budget_;
  std::uint64_t paid_for_ = 0;  // bytes that were added to the budget
  const std::shared_ptr<FileAccess::Block> block_;
  const std::size_t first_read_;  // bytes that the first read takes at the start of the file
  std::uint64_t start_ = 0;       // of the block, in the file
  std::size_t block_size_ = 0;    // bytes that the block stands for; 0 until something is read
  std::size_t read_size_ = 0;     // those that could be read; zeros follow
};

RegularFile::RegularFile(std::shared_ptr<Contents> contents) : contents_(std::move(contents)) {}

std::optional<RegularFile> RegularFile::Open(FileAccess& access, const std::string& path) {
  auto file = access.Open(path);
  if (!file) return std::nullopt;
  return RegularFile(std::make_shared<Contents>(std::move(file), access));
}

std::optional<RegularFile> RegularFile::Open(const std::string& path) {
  FileAccess access;
  if (!access.Status(path).regular) return std::nullopt;
  return Open(access, path);
}

std::uint64_t RegularFile::size() const { return contents_->size(); }

std::size_t RegularFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const {
  return contents_->ReadAt(offset, out);
}

Bytes RegularFile::BlockAt(std::uint64_t offset) const { return contents_->BlockAt(offset); }

}  // namespace quillmark
