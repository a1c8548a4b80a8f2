#include "platform/files/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/files/extended_attributes.h"
#include "platform/files/folders_above.h"

namespace quillmark {
namespace {

class SystemFile : public OpenedFile {
 public:
  SystemFile(int descriptor, std::uint64_t size) : descriptor_(descriptor), size_(size) {}
  ~SystemFile() override { ::close(descriptor_); }
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;

  std::uint64_t size() const override { return size_; }

  ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    std::size_t done = 0;
    while (done < out.size()) {
      const std::uint64_t at = offset + done;
      if (at > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) break;
      const std::span<std::uint8_t> rest = out.subspan(done);
      const ssize_t length = ::pread(descriptor_, rest.data(), rest.size(), static_cast<off_t>(at));
      if (length < 0 && errno == EINTR) continue;
      if (length < 0) return {done, errno};
      if (length == 0) break;
      done += static_cast<std::size_t>(length);
    }
    return {done, 0};
  }

 private:
  const int descriptor_;
  const std::uint64_t size_;
};

class MachineFileSystem : public FileSystem {
 public:
  FileStatus Status(const std::string& path) const override {
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

  std::unique_ptr<OpenedFile> Open(const std::string& path) const override {
    int descriptor = -1;
    do {
      // The path may lead to another kind of file by this time: with O_NONBLOCK and O_NOCTTY opening a FIFO
      // or terminal does no harm.
      descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) return nullptr;
    struct stat found = {};
    if (::fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode)) {
      const auto size = static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0));
      return std::make_unique<SystemFile>(descriptor, size);
    }
    ::close(descriptor);
    errno = EINVAL;
    return nullptr;
  }

  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const override {
    return quillmark::FoldersAboveWith(name, folders);
  }

  std::vector<std::string> AttributeNames(const std::string& path) const override {
    return ExtendedAttributeNames(path);
  }
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const override {
    return ReadExtendedAttribute(path, name);
  }
};

}  // namespace

std::vector<std::size_t> FileSystem::FoldersAboveWith(std::string_view /*name*/,
                                                      std::string_view folders) const {
  std::vector<std::size_t> ends;
  for (std::size_t end = folders.size(); end > 0; --end) {
    if (folders[end - 1] == '/') ends.push_back(end);
  }
  return ends;
}

const FileSystem& SystemFiles() {
  static const auto* const files = new MachineFileSystem;
  return *files;
}

// The system walks the levels of a path anew with each question.
void FileAccess::ChargeQuestion(const std::string& path) const {
  constexpr std::ptrdiff_t kUsualLevels = 16;
  const std::ptrdiff_t levels = std::count(path.begin(), path.end(), '/') - kUsualLevels;
  const auto deep_levels = static_cast<std::uint64_t>(std::max<std::ptrdiff_t>(levels, 0));
  Charge(budget_, Budget::kFileQuestion + deep_levels * Budget::kDeepLevel);
}

FileStatus FileAccess::Status(const std::string& path) const {
  ChargeQuestion(path);
  return system_.Status(path);
}

std::unique_ptr<OpenedFile> FileAccess::Open(const std::string& path) const {
  ChargeQuestion(path);
  return system_.Open(path);
}

std::vector<std::size_t> FileAccess::FoldersAboveWith(std::string_view name, std::string_view folders) const {
  const auto levels = static_cast<std::uint64_t>(std::count(folders.begin(), folders.end(), '/'));
  Charge(budget_, levels * Budget::kFileQuestion);
  return system_.FoldersAboveWith(name, folders);
}

std::vector<std::string> FileAccess::AttributeNames(const std::string& path) const {
  ChargeQuestion(path);
  return system_.AttributeNames(path);
}

std::optional<std::string> FileAccess::Attribute(const std::string& path, const std::string& name) const {
  ChargeQuestion(path);
  auto value = system_.Attribute(path, name);
  if (value && budget_ != nullptr) budget_->Allow(value->size());
  return value;
}

std::shared_ptr<FileAccess::Block> FileAccess::TakeBlock() {
  if (!block_ || block_.use_count() > 1) block_ = std::make_shared_for_overwrite<Block>();
  return block_;
}

}  // namespace quillmark
