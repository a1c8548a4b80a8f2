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

}  // namespace

FolderWalk::FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped)
    : options_(options), stopped_(std::move(stopped)), pending_{fs::path(folder)} {}

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
    if (it->is_directory(ignored)) {
      if (!options_.recurse || HoldsOtherFilesForks(name)) continue;
      const bool is_entered = options_.follow || !it->is_symlink(ignored);
      (is_entered ? folders : names_).push_back(std::move(name));
    } else if (!name.starts_with("._")) {
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
