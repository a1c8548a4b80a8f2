// FolderWalk: the files of a folder and of all folders below it, folder by folder in a stable order, and the
// folders that are not entered. Only the names in one folder, and the folders still to be entered,
// are held at a time.
#ifndef QUILLMARK_TOOL_FILES_FOLDER_WALK_H_
#define QUILLMARK_TOOL_FILES_FOLDER_WALK_H_

#include <dirent.h>
#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::tool {

class ForkCarriers;

// The files of one folder, and those of its folders that are not entered, by the bytes of their names.
struct WalkedFolder {
  struct Name {
    std::string name;
    bool is_sidecar = false;  // of a file that is not there
  };
  std::string path;
  std::string fault;  // why it cannot be listed, at least not to its end; else empty
  std::vector<Name> names;
  std::shared_ptr<const ForkCarriers> carriers;  // of its files
  int opened = -1;  // the folder's descriptor until the walk goes on; -1 when it cannot be opened

  std::string PathOf(const Name& name) const;
};

struct WalkOptions {
  bool recurse = true;  // into the folders of the folder
  bool follow = false;  // also into linked folders
};

// A folder's files come before its folders, both by the bytes of their names. Linked folders are not entered
// unless that is requested, and then each folder is walked once, under the path by which it is reached first:
// no walk is endless. What holds the resource forks of other files (._*, and the files in __MACOSX,
// .AppleDouble and resource.frk) is passed over, except sidecars whose file is not there.
class FolderWalk {
 public:
  FolderWalk(const std::string& folder, WalkOptions options, std::function<bool()> stopped);
  // The next folder that has files, or cannot be listed.
  std::optional<WalkedFolder> NextFolder();
  // False when there is none; true also when only listing more folders would show it.
  bool MayHaveNext() const { return !pending_.empty(); }

 private:
  struct Folder {
    std::string path;
    bool holds_forks = false;  // of files outside: only sidecars count
  };

  WalkedFolder List();
  int OpenNext();
  bool IsSidecar(const std::string& name) const;
  bool IsHandedOut(const std::string& file, bool is_sidecar) const;
  bool IsFirstVisit();

  const WalkOptions options_;
  const std::function<bool()> stopped_;
  struct Close {
    void operator()(DIR* folder) const { ::closedir(folder); }
  };

  Folder folder_;                              // whose files were handed out last
  std::unique_ptr<DIR, Close> opened_;         // folder_; null when it cannot be opened
  std::vector<Folder> pending_;                // the next one last
  std::set<std::pair<dev_t, ino_t>> visited_;  // where links are followed
};

}  // namespace quillmark::tool

#endif
