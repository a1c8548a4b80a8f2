#include "new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace quillmark::tool {
namespace {

// Removed at the end, unless it was given its name. A call that fails leaves its reason in errno.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder)
      : path_((folder / ".quillmark-XXXXXX").native()), descriptor_(::mkostemp(path_.data(), O_CLOEXEC)) {}
  ~TemporaryFile() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    if (is_there_) ::unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool is_open() const { return descriptor_ >= 0; }

  bool Write(Bytes bytes) const {
    while (!bytes.empty()) {
      const ssize_t done = ::write(descriptor_, bytes.data(), bytes.size());
      if (done < 0 && errno == EINTR) continue;
      if (done <= 0) return false;
      bytes = bytes.subspan(static_cast<std::size_t>(done));
    }
    return ::fsync(descriptor_) == 0;
  }

  // Readable as the user wants new files to be; a temporary file is its owner's alone.
  bool TakeUsualPermissions() const {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return ::fchmod(descriptor_, 0666 & ~mask) == 0;
  }

  bool TakeName(const std::string& path) {
    if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) {
      is_there_ = false;
      return true;
    }
    // Not every file system can rename so; most of the others can link.
    return errno == EINVAL && ::link(path_.c_str(), path.c_str()) == 0;
  }

 private:
  std::string path_;
  int descriptor_ = -1;
  bool is_there_ = true;
};

}  // namespace

std::optional<std::string> WriteNewFile(const std::string& path, Bytes bytes) {
  TemporaryFile file(std::filesystem::path(path).parent_path());
  if (file.is_open() && file.TakeUsualPermissions() && file.Write(bytes) && file.TakeName(path)) {
    return std::nullopt;
  }
  return std::strerror(errno);
}

}  // namespace quillmark::tool
