#include "platform/files/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/files/extended_attributes.h"
#include "platform/files/temporary_file.h"

namespace quillmark {
namespace {

// Permissions, owner and extended attributes.
bool TakeOver(const TemporaryFile& file, const std::string& target) {
  struct stat old = {};
  if (::stat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return false;
  struct stat own = {};
  if (::fstat(file.descriptor(), &own) != 0) return false;
  if (own.st_uid != old.st_uid || own.st_gid != old.st_gid) {
    // Only a privileged process may keep a foreign owner; the font stays as readable as it was either way.
    if (::fchown(file.descriptor(), old.st_uid, old.st_gid) != 0) errno = 0;
  }
  if (::fchmod(file.descriptor(), old.st_mode & 07777) != 0) return false;
  const std::vector<std::string> names = ExtendedAttributeNames(target);
  return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
    const auto value = ReadExtendedAttribute(target, name);
    const bool copied = value && WriteExtendedAttribute(file.path(), name, *value);
    return copied || !name.starts_with("user.");  // others belong to the system
  });
}

// Makes the rename survive a crash of the machine; the file is whole either way.
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
  if (!TakeOver(file, target.string()) || !file.Sync()) return false;
  if (::rename(file.path().c_str(), target.c_str()) != 0) return false;
  file.WasRenamed();
  SyncFolder(target.parent_path());
  return true;
}

}  // namespace quillmark
