#include "files/folder_walk.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string_view>
#include <utility>

#include "files/fork_carriers.h"
#include "reasons/fork_places.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAppleDoubleFolder = ".AppleDouble";

bool HoldsOtherFilesForks(const std::string& name) {
  return name == "__MACOSX" || name == kAppleDoubleFolder || name == "resource.frk";
}

std::string PathIn(const std::string& folder, const std::string& name) {
  return folder.empty() || folder.ends_with('/') ? folder + name : folder + '/' + name;
}

bool IsFolder(DIR* folder, const char* name, int flags) {
  struct stat status {};
  return ::fstatat(::dirfd(folder), name, &status, flags) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

FolderWalk::FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped)
    : options_(options), stopped_(std::move(stopped)), pending_{{folder, false}} {}

// Whether folder_ is visited for the first time, by its device and inode. True when these cannot be read:
// listing it then reports the fault.
bool FolderWalk::IsFirstVisit() {
  struct stat status {};
  if (!options_.follow || ::stat(folder_.path.c_str(), &status) != 0) return true;
  return visited_.emplace(status.st_dev, status.st_ino).second;
}

bool FolderWalk::IsSidecar(const std::string& name) const {
  return name.starts_with("._") ||
         (folder_.holds_forks && fs::path(folder_.path).filename() == kAppleDoubleFolder);
}

void FolderWalk::Take(const std::string& name) {
  std::error_code ignored;
  const auto has_no_owner = [&] {
    const fs::path owner = OwnerOfSidecar(PathIn(folder_.path, name));
    return fs::symlink_status(owner, ignored).type() == fs::file_type::not_found;
  };
  if (IsSidecar(name) ? has_no_owner() : !folder_.holds_forks) names_.push_back(name);
}

// Opens the next folder; returns 0 or the errno. The system walks a path in full at each call, so a folder
// below the one that was open is opened relative to it, but not where the whole path would be too long.
int FolderWalk::OpenNext() {
  const std::string base = PathIn(folder_.path, {});
  folder_ = std::move(pending_.back());
  pending_.pop_back();
  const bool is_below = opened_ && folder_.path.starts_with(base) && folder_.path.size() < PATH_MAX;
  const int number =
      ::openat(is_below ? ::dirfd(opened_.get()) : AT_FDCWD,
               folder_.path.c_str() + (is_below ? base.size() : 0), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR* const folder = number < 0 ? nullptr : ::fdopendir(number);
  const int error = folder != nullptr ? 0 : errno;
  if (folder == nullptr && number >= 0) ::close(number);
  opened_.reset(folder);
  return error;
}

// Their depth is bounded only by the paths that the system takes: folders are kept on a list, not on the
// stack.
void FolderWalk::List() {
  int error = OpenNext();
  carriers_.reset();
  if (!IsFirstVisit()) return;
  std::vector<std::string> folders;
  std::vector<std::string> fork_names;
  const auto next = [&]() -> const dirent* {
    if (error != 0 || stopped_()) return nullptr;
    errno = 0;
    const dirent* entry = ::readdir(opened_.get());
    if (entry == nullptr) error = errno;
    return entry;
  };
  while (const dirent* entry = next()) {
    std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (name.starts_with('.') || ::strcasecmp(name.c_str(), "resource.frk") == 0) fork_names.push_back(name);
    const bool is_own = entry->d_type == DT_DIR;  // and no link
    const bool may_lead_to_one = entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
    if (!is_own && !(may_lead_to_one && IsFolder(opened_.get(), entry->d_name, 0))) {
      Take(name);
    } else if (options_.recurse &&
               (options_.follow || is_own || IsFolder(opened_.get(), entry->d_name, AT_SYMLINK_NOFOLLOW))) {
      folders.push_back(std::move(name));
    } else if (!folder_.holds_forks && !HoldsOtherFilesForks(name)) {
      names_.push_back(std::move(name));
    }
  }
  if (error != 0) fault_ = std::string("the folder cannot be read: ") + std::strerror(error);
  const std::string base = PathIn(folder_.path, {});
  if (!names_.empty()) {
    carriers_ = error == 0 ? std::make_shared<const ForkCarriers>(base, fork_names)
                           : std::make_shared<const ForkCarriers>(base);
  }
  std::sort(names_.begin(), names_.end(), std::greater<>());
  std::sort(folders.begin(), folders.end(), std::greater<>());
  for (const std::string& name : folders) {
    pending_.push_back({PathIn(folder_.path, name), folder_.holds_forks || HoldsOtherFilesForks(name)});
  }
}

std::optional<WalkedPath> FolderWalk::Next() {
  while (names_.empty() && !pending_.empty() && !stopped_()) {
    List();
    if (!fault_.empty()) return WalkedPath{folder_.path, std::exchange(fault_, {}), false, nullptr};
  }
  if (names_.empty() || stopped_()) return std::nullopt;
  const std::string name = std::move(names_.back());
  names_.pop_back();
  return WalkedPath{PathIn(folder_.path, name), {}, IsSidecar(name), carriers_};
}

std::optional<WalkedFolder> FolderWalk::NextFolder() {
  while (names_.empty() && fault_.empty() && !pending_.empty() && !stopped_()) List();
  if (stopped_() || (names_.empty() && fault_.empty())) return std::nullopt;
  WalkedFolder folder{
      folder_.path, std::exchange(fault_, {}), {}, carriers_, opened_ ? ::dirfd(opened_.get()) : -1};
  folder.names.reserve(names_.size());
  for (; !names_.empty(); names_.pop_back()) {
    folder.names.push_back({names_.back(), IsSidecar(names_.back())});
  }
  return folder;
}

}  // namespace quillmark::tool
