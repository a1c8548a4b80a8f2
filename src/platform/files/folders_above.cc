#include "platform/files/folders_above.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

namespace quillmark {
namespace {

// The base folder moves down after this many levels; paths of fewer levels, as nearly all are, open no
// folder.
constexpr int kLevelsAtOnce = 32;

// An open folder, relative to which the folders below it are asked about.
class BaseFolder {
 public:
  BaseFolder() = default;
  ~BaseFolder() { Close(); }
  BaseFolder(const BaseFolder&) = delete;
  BaseFolder& operator=(const BaseFolder&) = delete;

  // Moves on to a folder below this one. False when that fails.
  bool Enter(const std::string& below) {
    const int descriptor = ::openat(descriptor_, below.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return false;
    Close();
    descriptor_ = descriptor;
    return true;
  }

  // False only when nothing is there; then no longer path through it finds anything either.
  bool MayHold(const std::string& below) const {
    struct stat ignored = {};
    return ::fstatat(descriptor_, below.c_str(), &ignored, 0) == 0 || errno != ENOENT;
  }

 private:
  void Close() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int descriptor_ = AT_FDCWD;
};

}  // namespace

std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view path) {
  std::vector<std::size_t> ends;
  BaseFolder base;
  bool can_be_told = true;
  int levels = 0;
  std::string below;  // the path below the base
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = path.find('/', start) + 1;
    below += path.substr(start, end - start);
    if (++levels % kLevelsAtOnce == 0 && can_be_told) {
      can_be_told = base.Enter(below);
      below.clear();
    }
    if (!can_be_told || base.MayHold(below + std::string(name))) ends.push_back(end);
    start = end;
  }
  std::reverse(ends.begin(), ends.end());
  return ends;
}

}  // namespace quillmark
