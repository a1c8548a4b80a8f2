// FolderWalk: the files of a folder and of all folders below it, one after another in a stable order, and the
// linked folders that are not entered. Only the names in one folder, and the folders still to be entered,
// are held at a time.
#ifndef QUILLMARK_TOOL_FILES_FOLDER_WALK_H_
#define QUILLMARK_TOOL_FILES_FOLDER_WALK_H_

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::tool {

struct WalkedPath {
  std::string path;   // of a file, of a linked folder, or of a folder that cannot be listed
  std::string fault;  // why it cannot be listed; else empty
};

struct WalkOptions {
  bool recurse = true;  // into the folders of the folder
  bool follow = false;  // also into linked folders
};

// A folder's files come before its folders, both by the bytes of their names. Linked folders are not entered
// unless that is asked for, and then each folder is walked once, under the path by which it is reached first:
// no walk is endless. The folders that hold other files' resource forks (__MACOSX, .AppleDouble,
// resource.frk) and the files that do (._*) are passed over.
class FolderWalk {
 public:
  FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped);
  std::optional<WalkedPath> Next();
  // False when there is none; true also when only listing more folders can tell.
  bool MayHaveNext() const { return !names_.empty() || !pending_.empty(); }

 private:
  void List();
  bool IsFirstVisit();

  const WalkOptions options_;
  const std::function<bool()> stopped_;
  std::filesystem::path folder_;                // whose files are handed out
  std::vector<std::string> names_;              // of them, the next one last
  std::vector<std::filesystem::path> pending_;  // folders, the next one last
  std::string fault_;                           // of listing folder_
  std::set<std::pair<dev_t, ino_t>> visited_;   // where links are followed
};

}  // namespace quillmark::tool

#endif
