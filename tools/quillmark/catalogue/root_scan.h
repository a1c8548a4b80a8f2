// RootScan: walks one root of a catalogue, compares the stamp of each file with the row that is kept of it,
// and hands out the files that must be read. No font is opened. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_ROOT_SCAN_H_
#define QUILLMARK_TOOL_CATALOGUE_ROOT_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/database.h"
#include "catalogue/file_clock.h"
#include "catalogue/mount_points.h"
#include "catalogue/own_files.h"
#include "catalogue/recording_files.h"
#include "catalogue/stamps.h"
#include "files/folder_walk.h"

namespace quillmark::tool {

struct Root {
  std::int64_t id = 0;
  std::string path;
  std::string identity;            // of what was found there when it was walked whole; empty before
  bool accepts_unmounted = false;  // where nothing is mounted any more, files are gone
};

struct FolderOfRoot {
  std::string path;  // with a slash at its end
  std::string
      key;  // the folders below the root, each with a zero byte behind it: sorts as folders are walked
};

// A file that must be read.
struct FoundFile {
  FolderOfRoot folder;
  std::string name;
  bool is_sidecar = false;  // of a file that is not there
  Stamp stamp;              // from before it is read
  Companions carriers;
  std::shared_ptr<const ForkCarriers> possible_carriers;  // of all files in the folder
  std::int64_t seen_at = 0;                               // when the stamps were taken
  std::int64_t known_id = 0;                              // of its row; 0 without one
  bool was_passed_over = false;                           // before another file of its folder changed

  std::string path() const { return folder.path + name; }
};

// What the catalogue knows of a file.
struct KnownRow {
  std::int64_t id = 0;
  std::string name;
  Stamp stamp;
  bool has_companions = false;
  bool must_be_read = false;  // uncertain, or read by other rules
  bool depends_on_folder = false;
};

// The folder that is compared, a part of its files at a time: there can be millions.
struct OpenFolder {
  WalkedFolder walked;
  FolderOfRoot place;
  std::size_t next_name = 0;
  std::vector<KnownRow> known;  // some of its rows, by name
  std::size_t next_known = 0;
  bool has_more_known = true;
  // A file changed or is gone: files whose answer depends on the others must be read.
  bool has_changed = false;
  std::string last_dependent;  // of those that were passed over before that; empty for none
  std::string last_read;       // of these, when they are read at the end
};

class RootScan {
 public:
  static constexpr std::string_view kFile = "file";  // the identity of a root that is one

  struct Events {
    // For each file that need not be read.
    std::function<void()> on_passed_over;
    // For each folder that cannot be listed.
    std::function<void(const std::string& path, const std::string& fault)> on_fault;
    std::function<bool()> stopped;
  };
  // `own` and `clock` outlive the object. The table temp.gone_files gets the rows of files that are not there
  // any more.
  RootScan(Database& database, Root root, StampRules rules, const OwnFiles& own, const FileClock& clock,
           Events events);

  // Compares some more files; false when there are none.
  bool Advance();
  // A file that was found, the first first; nothing when more must be compared.
  std::optional<FoundFile> TakeFound();

  // After the last file: whether every folder could be listed, and all is mounted that was. Otherwise nothing
  // may count as gone.
  bool is_whole() const { return is_whole_; }
  // Device and inode of the folder at the root's path; "file" for a file.
  const std::string& identity() const { return identity_; }
  bool is_file() const { return identity_ == kFile; }

 private:
  void Begin();
  void BeginWithFile();
  void Enter(WalkedFolder walked);
  void CompareSome();
  void ReadDependents();
  const KnownRow* NextKnown();
  void NoteChange();
  FoundFile Found(const std::string& name, bool is_sidecar, const KnownRow* known) const;
  void CompareFile(const WalkedFolder::Name& name, const KnownRow* known);
  void NoteGone(const KnownRow& known);
  bool HasCompanionsAsKnown(std::int64_t file, const Companions& carriers);
  KnownRow KnownAt(const Statement& row) const;
  void LookForUnmounted();
  void Fail(const std::string& path, const std::string& fault);
  FolderOfRoot FolderAt(const std::string& path) const;

  const Root root_;
  const StampRules rules_;
  const OwnFiles& own_;
  const FileClock& clock_;
  const Events events_;
  Statement files_, dependents_, mark_dependents_, companions_, gone_, gone_folders_, gone_tail_, any_file_;
  MountPoints mounts_;
  std::optional<FolderWalk> walk_;
  std::optional<OpenFolder> folder_;
  std::string identity_;
  dev_t device_ = 0;      // of the folder at hand
  std::string next_key_;  // the least that a folder after those that were compared can have
  bool has_begun_ = false, has_ended_ = false;
  bool is_whole_ = true;
  bool has_files_ = false;
  bool is_other_kind_ = false;  // a folder where a file was before, or a file where a folder was
  std::deque<FoundFile> ready_;
};

}  // namespace quillmark::tool

#endif
