// Opens and reads regular files, and nothing else: no device or FIFO is opened, and no read blocks.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/file_status.h"
#include "platform/forks.h"

namespace quillmark {

FileStatus StatFile(const std::string& path) {
  FileStatus status;
  struct stat found = {};
  if (path.find('\0') != std::string::npos) {
    status.error = ENOENT;
  } else if (::stat(path.c_str(), &found) != 0) {
    status.error = errno;
  } else if (S_ISREG(found.st_mode)) {
    status.regular = true;
    status.size = static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0));
  } else {
    status.directory = S_ISDIR(found.st_mode);
  }
  return status;
}

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
using Block = std::array<std::uint8_t, kBlockSize>;

// A thread keeps one for the files that it opens one after the other.
std::shared_ptr<Block> TakeBlock() {
  thread_local std::shared_ptr<Block> kept;
  if (!kept || kept.use_count() > 1) kept = std::make_shared<Block>();
  return kept;
}

}  // namespace

// The descriptor, and the block of bytes that was read last.
class RegularFile::Contents {
 public:
  Contents() = default;
  ~Contents() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Contents(const Contents&) = delete;
  Contents& operator=(const Contents&) = delete;

  // False when that is no regular file or cannot be opened. Once an object.
  bool Open(const std::string& path) {
    do {
      // Something else may have come to the path since it was looked at: O_NONBLOCK and O_NOCTTY keep even
      // that harmless.
      descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (descriptor_ < 0 && errno == EINTR);
    struct stat found = {};
    if (descriptor_ < 0 || ::fstat(descriptor_, &found) != 0 || !S_ISREG(found.st_mode)) return false;
    size_ = static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0));
    return true;
  }

  std::uint64_t size() const { return size_; }

  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (!block_ && offset < kBlockSize && offset < size_) Load(0);
    const auto held =
        offset < start_ ? std::nullopt : Slice(HeldBytes().first(came_), offset - start_, out.size());
    if (!held) return ReadFile(offset, out);
    std::ranges::copy(*held, out.begin());
    return out.size();
  }

  Bytes BlockAt(std::uint64_t offset) {
    if (offset >= size_) return {};
    if (offset < start_ || offset - start_ >= held_) Load(offset);
    return HeldBytes().subspan(offset - start_);
  }

 private:
  Bytes HeldBytes() const { return block_ ? Bytes(*block_).first(held_) : Bytes{}; }

  void Load(std::uint64_t offset) {
    if (!block_) block_ = TakeBlock();
    start_ = offset;
    held_ = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockSize, size_ - offset));
    const std::span<std::uint8_t> wanted = std::span(*block_).first(held_);
    came_ = ReadFile(offset, wanted);
    std::ranges::fill(wanted.subspan(came_), std::uint8_t{0});
  }

  std::size_t ReadFile(std::uint64_t offset, std::span<std::uint8_t> out) const {
    std::size_t done = 0;
    while (done < out.size()) {
      const std::uint64_t at = offset + done;
      if (at > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) break;
      const std::span<std::uint8_t> rest = out.subspan(done);
      const ssize_t came = ::pread(descriptor_, rest.data(), rest.size(), static_cast<off_t>(at));
      if (came < 0 && errno == EINTR) continue;
      if (came <= 0) break;
      done += static_cast<std::size_t>(came);
    }
    return done;
  }

  int descriptor_ = -1;
  std::uint64_t size_ = 0;
  std::shared_ptr<Block> block_;  // none until something is read
  std::uint64_t start_ = 0;       // of the block, in the file
  std::size_t held_ = 0;          // bytes that the block stands for
  std::size_t came_ = 0;          // those that could be read; zeros follow
};

RegularFile::RegularFile(std::shared_ptr<Contents> contents) : contents_(std::move(contents)) {}

std::optional<RegularFile> RegularFile::OpenAfresh(const std::string& path) {
  auto contents = std::make_shared<Contents>();
  if (!contents->Open(path)) return std::nullopt;
  return RegularFile(std::move(contents));
}

std::uint64_t RegularFile::size() const { return contents_->size(); }

std::size_t RegularFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const {
  return contents_->ReadAt(offset, out);
}

Bytes RegularFile::BlockAt(std::uint64_t offset) const { return contents_->BlockAt(offset); }

}  // namespace quillmark
