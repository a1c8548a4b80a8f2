#include "catalogue/own_files.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace quillmark::tool {
namespace {

std::size_t NameStart(const std::string& path) { return path.rfind('/') + 1; }

bool AreSameFolder(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

}  // namespace

bool IsNewEnding(std::string_view ending) {
  if (!ending.starts_with(kNewEnding)) return false;
  ending.remove_prefix(kNewEnding.size());
  return !ending.empty() && ending.find_first_not_of("0123456789") == std::string_view::npos;
}

OwnFiles::OwnFiles(const std::string& catalogue)
    : folder_(catalogue.substr(0, NameStart(catalogue))), name_(catalogue.substr(NameStart(catalogue))) {
  if (name_.empty()) return;
  for (const char* ending : {"", "-shm"}) {
    struct stat found {};
    if (::stat((catalogue + ending).c_str(), &found) != 0) continue;
    locked_.emplace_back(found.st_dev, static_cast<std::int64_t>(found.st_ino));
  }
}

bool OwnFiles::HasOwnName(const std::string& path) const {
  const std::size_t start = NameStart(path);
  if (name_.empty() || path.compare(start, name_.size(), name_) != 0) return false;
  const std::string_view ending = std::string_view(path).substr(start + name_.size());
  const bool is_own = ending.empty() || ending == "-wal" || ending == "-shm" || ending == "-journal" ||
                      ending == ".lock" || IsNewEnding(ending);
  return is_own && AreSameFolder(start == 0 ? "." : path.substr(0, start), folder_);
}

bool OwnFiles::Contain(const std::string& path, std::int64_t inode) const {
  if (HasOwnName(path)) return true;
  const bool may_be_locked =
      std::any_of(locked_.begin(), locked_.end(), [&](const auto& file) { return file.second == inode; });
  if (!may_be_locked) return false;
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0 &&
         std::find(locked_.begin(), locked_.end(), std::pair(found.st_dev, inode)) != locked_.end();
}

bool OtherFiles::IsOwn(const std::string& path) const {
  struct stat found {};
  if (is_other_(path)) return false;
  return ::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode) &&
         own_.Contain(path, static_cast<std::int64_t>(found.st_ino));
}

FileStatus OtherFiles::Status(const std::string& path) const {
  FileStatus status = SystemFiles().Status(path);
  if (status.regular && IsOwn(path)) return {ENOENT};
  return status;
}

std::unique_ptr<OpenedFile> OtherFiles::Open(const std::string& path) const {
  if (IsOwn(path)) {
    errno = ENOENT;
    return nullptr;
  }
  return SystemFiles().Open(path);
}

}  // namespace quillmark::tool
