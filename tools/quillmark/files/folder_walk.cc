#include "files/folder_walk.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

bool HoldsOtherFilesForks(const std::string& name) {
  return name == "__MACOSX" || name == ".AppleDouble" || name == "resource.frk";
}

// Whether it is a regular file, or its type is unknown: a file that vanished, a link that leads nowhere or
// may not be followed is listed too, so that the fault is reported when it is opened.
bool MayBeFile(const fs::directory_entry& entry) {
  std::error_code error;
  if (entry.is_regular_file(error)) return true;
  return error || !entry.exists(error);
}

}  // namespace

FolderWalk::FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped)
    : options_(options), stopped_(std::move(stopped)), pending_{fs::path(folder)} {}

bool FolderWalk::IsEntered(const fs::directory_entry& entry) const {
  std::error_code ignored;
  return (options_.follow || !entry.is_symlink(ignored)) && entry.is_directory(ignored);
}

// Whether folder_ is visited for the first time, by its device and inode. True when these cannot be read:
// listing it then reports the fault.
bool FolderWalk::IsFirstVisit() {
  struct stat status {};
  if (!options_.follow || ::stat(folder_.c_str(), &status) != 0) return true;
  return visited_.emplace(status.st_dev, status.st_ino).second;
}

// Their depth is bounded only by the paths that the system takes: folders are kept on a list, not on the
// stack.
void FolderWalk::List() {
  folder_ = std::move(pending_.back());
  pending_.pop_back();
  if (!IsFirstVisit()) return;
  std::vector<std::string> folders;
  std::error_code error;
  for (fs::directory_iterator it(folder_, error), end; !error && it != end && !stopped_();
       it.increment(error)) {
    std::string name = it->path().filename().native();
    std::error_code ignored;
    if (IsEntered(*it)) {
      if (options_.recurse && !HoldsOtherFilesForks(name)) folders.push_back(std::move(name));
    } else if (!name.starts_with("._") && MayBeFile(*it)) {
      names_.push_back(std::move(name));
    }
  }
  if (error) fault_ = "the folder cannot be read: " + error.message();
  std::sort(names_.begin(), names_.end(), std::greater<>());
  std::sort(folders.begin(), folders.end(), std::greater<>());
  for (const std::string& name : folders) pending_.push_back(folder_ / name);
}

std::optional<WalkedPath> FolderWalk::Next() {
  while (names_.empty() && !pending_.empty() && !stopped_()) {
    List();
    if (!fault_.empty()) return WalkedPath{folder_.native(), std::exchange(fault_, {})};
  }
  if (names_.empty() || stopped_()) return std::nullopt;
  WalkedPath found{(folder_ / names_.back()).native(), {}};
  names_.pop_back();
  return found;
}

}  // namespace quillmark::tool
