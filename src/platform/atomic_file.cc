#include "platform/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/extended_attributes.h"

namespace quillmark {
namespace {

class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder)
      : path_((folder / ".quillmark-XXXXXX").string()) {
    descriptor_ = ::mkostemp(path_.data(), O_CLOEXEC);
  }
  ~TemporaryFile() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    if (!moved_) ::unlink(path_.c_str());
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
    return true;
  }

  bool TakeOverFrom(const std::string& target) const {
    struct stat old = {};
    if (::stat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return false;
    struct stat own = {};
    if (::fstat(descriptor_, &own) != 0) return false;
    if (own.st_uid != old.st_uid || own.st_gid != old.st_gid) {
      // Only a privileged process may keep a foreign owner; the font stays as readable as it was either way.
      if (::fchown(descriptor_, old.st_uid, old.st_gid) != 0) errno = 0;
    }
    if (::fchmod(descriptor_, old.st_mode & 07777) != 0) return false;
    const std::vector<std::string> names = ExtendedAttributeNames(target);
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
      const auto value = ReadExtendedAttribute(target, name);
      const bool copied = value && WriteExtendedAttribute(path_, name, *value);
      return copied || !name.starts_with("user.");  // others belong to the system
    });
  }

  bool MoveTo(const std::string& target) {
    if (::fsync(descriptor_) != 0) return false;
    moved_ = ::rename(path_.c_str(), target.c_str()) == 0;
    return moved_;
  }

 private:
  std::string path_;
  int descriptor_ = -1;
  bool moved_ = false;
};

// So that the new name outlives a crash of the machine; the file is whole with or without it.
void SyncFolder(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

}  // namespace

bool ReplaceFile(const std::string& path, const std::function<bool(const ByteSink&)>& produce) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  if (error) return false;
  TemporaryFile file(target.parent_path());
  if (!file.is_open() || !produce([&](Bytes bytes) { return file.Write(bytes); })) return false;
  if (!file.TakeOverFrom(target.string()) || !file.MoveTo(target.string())) return false;
  SyncFolder(target.parent_path());
  return true;
}

}  // namespace quillmark
