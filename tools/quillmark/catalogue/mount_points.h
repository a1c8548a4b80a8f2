// MountPoints: the folders of a root on which file systems were mounted when files were found there. Where
// none is mounted any more, the files that are missing are not gone. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_MOUNT_POINTS_H_
#define QUILLMARK_TOOL_CATALOGUE_MOUNT_POINTS_H_

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "catalogue/database.h"

namespace quillmark::tool {

class MountPoints {
 public:
  // Of the root that has this row, a folder, whose path ends with a slash.
  MountPoints(Database& database, std::int64_t root, std::string path);

  // Remembers the mount points on the way to a folder with files, that above the root, too. Folders come in
  // the order of a walk, with their keys (root_scan.h); `opened` is the folder's descriptor, or -1.
  void Enter(const std::string& key, int opened);

  // Paths of those that are none any more, of which files are still known; others are forgotten.
  std::vector<std::string> Unmounted();
  // Forgets all that are none any more.
  void ForgetUnmounted();

 private:
  std::string PathOf(const std::string& key) const;
  void Add(const std::string& key);
  void AddAbove();

  const std::int64_t root_;
  const std::string path_;
  Statement read_, add_, remove_;
  std::set<std::string> known_;  // keys
  // Of the folder that was entered last: its mount, and the key of the mount point.
  std::optional<std::uint64_t> last_mount_;
  std::string last_key_;
};

}  // namespace quillmark::tool

#endif
