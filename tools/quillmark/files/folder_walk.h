// FolderWalk: the files of a folder and of all folders below it, one after another in a stable order, and the
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

struct WalkedPath {
  std::string path;         // of a file, of a folder that is not entered, or of one that cannot be listed
  std::string fault;        // why it cannot be listed; else empty
  bool is_sidecar = false;  // of a file that is not there
  std::shared_ptr<const ForkCarriers> carriers;  // of the files of its folder
};

// The files of one folder, by the bytes of their names.
struct WalkedFolder {
  struct Name {
    std::string name;
    bool is_sidecar = false;  // of a file that is not there
  };
  std::string path;
  std::string fault;        // why it cannot be listed, at least not to its end; else empty
  std::vector<Name> names;  // as WalkedPath has them
  std::shared_ptr<const ForkCarriers> carriers;  // of its files
  int opened = -1;  // the folder's descriptor until the walk goes on; -1 when it cannot be opened
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
  std::optional<WalkedPath> Next();
  // The same by folders, for a walk without calls of Next: the next one with files, or that cannot be listed.
  std::optional<WalkedFolder> NextFolder();
  // False when there is none; true also when only listing more folders would show it.
  bool MayHaveNext() const { return !names_.empty() || !pending_.empty(); }

 private:
  struct Folder {
    std::string path;
    bool holds_forks = false;  // of files outside: only sidecars count
  };

  void List();
  int OpenNext();
  bool IsSidecar(const std::string& name) const;
  void Take(const std::string& name);
  bool IsFirstVisit();

  const WalkOptions options_;
  const std::function<bool()> stopped_;
  struct Close {
    void operator()(DIR* folder) const { ::closedir(folder); }
  };

  Folder folder_;                                 // whose files are handed out
  std::unique_ptr<DIR, Close> opened_;            // folder_; null when it cannot be opened
  std::vector<std::string> names_;                // of them, the next one last
  std::shared_ptr<const ForkCarriers> carriers_;  // of the files in folder_, if it has any
  std::vector<Folder> pending_;                   // the next one last
  std::string fault_;                             // of listing folder_
  std::set<std::pair<dev_t, ino_t>> visited_;     // where links are followed
};

}  // namespace quillmark::tool

#endif
