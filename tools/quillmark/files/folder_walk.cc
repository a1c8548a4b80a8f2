#include "files/folder_walk.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include "reasons/fork_places.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAppleDoubleFolder = ".AppleDouble";

bool HoldsOtherFilesForks(const std::string& name) {
  return name == "__MACOSX" || name == kAppleDoubleFolder || name == "resource.frk";
}

}  // namespace

FolderWalk::FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped)
    : options_(options), stopped_(std::move(stopped)), pending_{{fs::path(folder), false}} {}

// Whether folder_ is visited for the first time, by its device and inode. True when these cannot be read:
// listing it then reports the fault.
bool FolderWalk::IsFirstVisit() {
  struct stat status {};
  if (!options_.follow || ::stat(folder_.path.c_str(), &status) != 0) return true;
  return visited_.emplace(status.st_dev, status.st_ino).second;
}

bool FolderWalk::IsSidecar(const std::string& name) const {
  return name.starts_with("._") || (folder_.holds_forks && folder_.path.filename() == kAppleDoubleFolder);
}

void FolderWalk::Take(const std::string& name) {
  std::error_code ignored;
  const auto has_no_owner = [&] {
    const fs::path owner = OwnerOfSidecar(folder_.path / name);
    return fs::symlink_status(owner, ignored).type() == fs::file_type::not_found;
  };
  if (IsSidecar(name) ? has_no_owner() : !folder_.holds_forks) names_.push_back(name);
}

// Their depth is bounded only by the paths that the system takes: folders are kept on a list, not on the
// stack.
void FolderWalk::List() {
  folder_ = std::move(pending_.back());
  pending_.pop_back();
  if (!IsFirstVisit()) return;
  std::vector<std::string> folders;
  std::error_code error;
  for (fs::directory_iterator it(folder_.path, error), end; !error && it != end && !stopped_();
       it.increment(error)) {
    std::string name = it->path().filename().native();
    std::error_code ignored;
    if (!it->is_directory(ignored)) {
      Take(name);
    } else if (options_.recurse && (options_.follow || !it->is_symlink(ignored))) {
      folders.push_back(std::move(name));
    } else if (!folder_.holds_forks && !HoldsOtherFilesForks(name)) {
      names_.push_back(std::move(name));
    }
  }
  if (error) fault_ = "the folder cannot be read: " + error.message();
  std::sort(names_.begin(), names_.end(), std::greater<>());
  std::sort(folders.begin(), folders.end(), std::greater<>());
  for (const std::string& name : folders) {
    pending_.push_back({folder_.path / name, folder_.holds_forks || HoldsOtherFilesForks(name)});
  }
}

std::optional<WalkedPath> FolderWalk::Next() {
  while (names_.empty() && !pending_.empty() && !stopped_()) {
    List();
    if (!fault_.empty()) return WalkedPath{folder_.path.native(), std::exchange(fault_, {})};
  }
  if (names_.empty() || stopped_()) return std::nullopt;
  const std::string name = std::move(names_.back());
  names_.pop_back();
  return WalkedPath{(folder_.path / name).native(), {}, IsSidecar(name)};
}

}  // namespace quillmark::tool
