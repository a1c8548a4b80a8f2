// The files that a command's paths stand for, one after another: named ones as they are, folders walked to
// the bottom in a stable order (folder_walk.h).
#ifndef QUILLMARK_TOOL_FILES_FONT_PATHS_H_
#define QUILLMARK_TOOL_FILES_FONT_PATHS_H_

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "files/folder_walk.h"
#include "files/path_list.h"

namespace quillmark::tool {

// What the command line gave.
struct PathSources {
  std::vector<std::string> paths;
  // Set where the path "-" stands for standard input: the file name that goes with it, or empty to let its
  // first bytes choose one.
  std::optional<std::string> standard_input_name;
  std::string list;  // file of further paths, "-" for standard input; empty without one
  bool list_is_nul_separated = false;
  WalkOptions walk;
};

struct FontPath {
  std::string path;
  bool named = false;       // given on the command line or in the list, not found in a folder
  std::string fault;        // why a folder or the list cannot be read; empty for a file
  bool is_sidecar = false;  // found in a folder, the file whose resource fork it carries is not there
  // As in PathSources, of standard input; nothing for a file.
  std::optional<std::string> standard_input_name = std::nullopt;
  // Which files may carry its forks, where its folder was listed; else null.
  std::shared_ptr<const ForkCarriers> carriers = nullptr;

  std::string Shown() const;  // in messages
};

// Paths that are handed out one after another.
class PathSource {
 public:
  virtual ~PathSource() = default;
  // One thread at a time.
  virtual std::optional<FontPath> Next() = 0;
  // False when there is none; true also when only asking would show it. Never waits.
  virtual bool MayHaveNext() const = 0;
  // Any thread: no more paths are wanted.
  virtual void Stop() = 0;
};

// Paths are found as they are requested, so that any number of them takes bounded memory. A named path is
// handed out even when nothing is there. After an interrupt (interrupt.h) none is.
class FontPaths : public PathSource {
 public:
  explicit FontPaths(const PathSources& sources);

  std::optional<FontPath> Next() override;
  bool MayHaveNext() const override {
    return next_ < paths_.size() || list_ || next_name_ < walked_.names.size() ||
           (walk_ && walk_->MayHaveNext());
  }
  void Stop() override { stopped_ = true; }
  // Whether an interrupt ended the paths early.
  bool cut_short() const { return cut_short_; }

 private:
  std::optional<FontPath> Found();
  std::optional<FontPath> Walked();
  std::optional<FontPath> Named();
  bool Stopped() const;

  const std::vector<std::string> paths_;
  const std::optional<std::string> standard_input_name_;
  const WalkOptions walk_options_;
  std::size_t next_ = 0;
  std::optional<PathList> list_;
  std::optional<FolderWalk> walk_;
  WalkedFolder walked_;        // its folder whose files are handed out
  std::size_t next_name_ = 0;  // of these
  std::atomic<bool> stopped_ = false;
  bool ended_ = false;
  bool cut_short_ = false;
};

// Counts the same paths on a thread of its own, if one can be started and the count is shown: all folders are
// walked a second time for it.
class PathCount {
 public:
  PathCount(const PathSources& sources, bool is_shown);
  // Once all are counted. Never for a list that can be read but once, such as a pipe.
  std::optional<std::size_t> total() const;

 private:
  void Count(const PathSources& sources, const std::stop_token& stop);

  std::atomic<std::size_t> counted_ = 0;
  std::atomic<bool> complete_ = false;
  std::jthread thread_;
};

}  // namespace quillmark::tool

#endif
