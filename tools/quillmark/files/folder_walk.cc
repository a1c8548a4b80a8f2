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
#include <string_view>

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

bool FolderWalk::IsHandedOut(const std::string& file, bool is_sidecar) const {
  if (!is_sidecar) return !folder_.holds_forks;
  std::error_code ignored;
  const fs::path owner = OwnerOfSidecar(PathIn(folder_.path, file));
  return fs::symlink_status(owner, ignored).type() == fs::file_type::not_found;
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
WalkedFolder FolderWalk::List() {
  int error = OpenNext();
  WalkedFolder listed{folder_.path, {}, {}, nullptr, opened_ ? ::dirfd(opened_.get()) : -1};
  if (!IsFirstVisit()) return listed;
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
    const bool is_sidecar = IsSidecar(name);
    if (!is_own && !(may_lead_to_one && IsFolder(opened_.get(), entry->d_name, 0))) {
      if (IsHandedOut(name, is_sidecar)) listed.names.push_back({std::move(name), is_sidecar});
    } else if (options_.recurse &&
               (options_.follow || is_own || IsFolder(opened_.get(), entry->d_name, AT_SYMLINK_NOFOLLOW))) {
      folders.push_back(std::move(name));
    } else if (!folder_.holds_forks && !HoldsOtherFilesForks(name)) {
      listed.names.push_back({std::move(name), is_sidecar});
    }
  }
  if (error != 0) listed.fault = std::string("the folder cannot be read: ") + std::strerror(error);
  const std::string base = PathIn(folder_.path, {});
  if (!listed.names.empty()) {
    listed.carriers = error == 0 ? std::make_shared<const ForkCarriers>(base, fork_names)
                                 : std::make_shared<const ForkCarriers>(base);
  }
  std::ranges::sort(listed.names, {}, &WalkedFolder::Name::name);
  std::sort(folders.begin(), folders.end(), std::greater<>());
  // Some file systems list what is removed and made anew meanwhile twice.
  const auto is_same = [](const auto& a, const auto& b) { return a.name == b.name; };
  listed.names.erase(std::unique(listed.names.begin(), listed.names.end(), is_same), listed.names.end());
  folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
  for (const std::string& name : folders) {
    pending_.push_back({PathIn(folder_.path, name), folder_.holds_forks || HoldsOtherFilesForks(name)});
  }
  return listed;
}

std::optional<WalkedFolder> FolderWalk::NextFolder() {
  while (!pending_.empty() && !stopped_()) {
    WalkedFolder folder = List();
    const bool is_told = !folder.names.empty() || !folder.fault.empty();
    if (is_told && !stopped_()) return folder;
  }
  return std::nullopt;
}

std::string WalkedFolder::PathOf(const Name& name) const { return PathIn(path, name.name); }

}  // namespace quillmark::tool
