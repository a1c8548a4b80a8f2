#include "split/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "platform/files/temporary_file.h"

namespace quillmark::tool {
namespace {

// Readable as the user wants new files to be.
bool TakeUsualPermissions(const TemporaryFile& file) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return ::fchmod(file.descriptor(), 0666 & ~mask) == 0;
}

// Some file systems cannot be told to.
bool Sync(const TemporaryFile& file) { return ::fdatasync(file.descriptor()) == 0 || errno == EINVAL; }

bool TakeName(TemporaryFile& file, const std::string& path) {
  if (::renameat2(AT_FDCWD, file.path().c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) {
    file.WasRenamed();
    return true;
  }
  // Not every file system can rename so; most of the others can link.
  return errno == EINVAL && ::link(file.path().c_str(), path.c_str()) == 0;
}

}  // namespace

std::optional<std::string> WriteNewFile(const std::string& path, Bytes bytes) {
  TemporaryFile file(std::filesystem::path(path).parent_path());
  if (file.is_open() && TakeUsualPermissions(file) && file.Write(bytes) && Sync(file) &&
      TakeName(file, path)) {
    return std::nullopt;
  }
  return std::strerror(errno);
}

}  // namespace quillmark::tool
