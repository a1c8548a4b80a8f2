#include "platform/files/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "platform/files/extended_attributes.h"

namespace quillmark {
namespace {

// Owns an open file descriptor, or none (a negative number, AT_FDCWD too).
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int number() const { return number_; }

 private:
  int number_;
};

class SystemFile : public OpenedFile {
 public:
  SystemFile(Descriptor descriptor, std::uint64_t size) : descriptor_(std::move(descriptor)), size_(size) {}

  std::uint64_t size() const override { return size_; }

  ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    std::size_t done = 0;
    while (done < out.size()) {
      const std::uint64_t at = offset + done;
      if (at > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) break;
      const std::span<std::uint8_t> rest = out.subspan(done);
      const ssize_t length = ::pread(descriptor_.number(), rest.data(), rest.size(), static_cast<off_t>(at));
      if (length < 0 && errno == EINTR) continue;
      if (length < 0) return {done, errno};
      if (length == 0) break;
      done += static_cast<std::size_t>(length);
    }
    return {done, 0};
  }

 private:
  const Descriptor descriptor_;
  const std::uint64_t size_;
};

// After this many levels of a path the folder there is opened; those below it are then asked about relative
// to it. Paths of fewer levels, as nearly all are, open no folder.
constexpr int kLevelsAtOnce = 32;

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
    int number = -1;
    do {
      // The path may lead to another kind of file by this time: with O_NONBLOCK and O_NOCTTY opening a FIFO
      // or terminal does no harm.
      number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (number < 0 && errno == EINTR);
    if (number < 0) return nullptr;
    Descriptor descriptor(number);
    struct stat found = {};
    if (::fstat(number, &found) != 0 || !S_ISREG(found.st_mode)) {
      errno = EINVAL;
      return nullptr;
    }
    const auto size = static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0));
    return std::make_unique<SystemFile>(std::move(descriptor), size);
  }

  // The system walks a path in full at each call, so asking by whole paths would cost the square of the
  // depth.
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view path) const override {
    std::vector<std::size_t> ends;
    Descriptor base(AT_FDCWD);
    bool can_be_told = true;
    int levels = 0;
    std::string below;  // the path below the base
    for (std::size_t start = 0; start < path.size();) {
      const std::size_t end = path.find('/', start) + 1;
      below += path.substr(start, end - start);
      if (++levels % kLevelsAtOnce == 0 && can_be_told) {
        base = Descriptor(::openat(base.number(), below.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        can_be_told = base.number() >= 0;
        below.clear();
      }
      // Only ENOENT says that nothing is there, and that no longer path through it finds anything either.
      const std::string asked = below + std::string(name);
      struct stat ignored = {};
      const bool is_absent =
          can_be_told && ::fstatat(base.number(), asked.c_str(), &ignored, 0) != 0 && errno == ENOENT;
      if (!is_absent) ends.push_back(end);
      start = end;
    }
    std::reverse(ends.begin(), ends.end());
    return ends;
  }

  std::vector<std::string> NamesIn(const std::string& folder) const override {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
      names.push_back(it->path().filename());
    }
    return names;
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

std::vector<std::string> FileSystem::NamesIn(const std::string& /*folder*/) const { return {}; }

const FileSystem& SystemFiles() {
  static const auto* const files = new MachineFileSystem;
  return *files;
}

// The kernel resolves every level of a path on each call.
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
