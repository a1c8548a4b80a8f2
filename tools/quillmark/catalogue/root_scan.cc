#include "catalogue/root_scan.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "catalogue/reading_rules.h"
#include "files/fork_carriers.h"

namespace quillmark::tool {
namespace {

std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }
std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }
std::string WithSlash(const std::string& path) { return path.ends_with('/') ? path : path + '/'; }

// The key that follows that of the root itself, which is empty.
constexpr std::string_view kPastFirstKey("\0", 1);

constexpr std::int64_t kFilesAtOnce = 1024;

// What KnownAt reads, of the files of a folder behind a name.
std::string FilesBehind(const char* condition) {
  return std::string(
             "SELECT files.id, name, kind, size, mtime, ctime, inode, attributes, companions, uncertain, "
             "whole_folder, "
             "rules, outcome FROM folders JOIN files ON files.folder = folders.id "
             "WHERE root = ?1 AND key = ?2 AND name > ?3 ") +
         condition + "ORDER BY name LIMIT ?4";
}

// Of those that exist.
Companions StampsOf(const std::vector<std::string>& paths) {
  Companions found;
  for (const std::string& path : paths) {
    const Stamp stamp = StampOf(path);
    if (stamp.kind != Stamp::kAbsent) found.emplace(path, stamp);
  }
  return found;
}

Stamp KeptStamp(const Statement& found, int column) {
  return {found.Integer(column),     found.Integer(column + 1), found.Integer(column + 2),
          found.Integer(column + 3), found.Integer(column + 4), found.Integer(column + 5)};
}

}  // namespace

RootScan::RootScan(Database& database, Root root, StampRules rules, const OwnFiles& own,
                   const FileClock& clock, Events events)
    : root_(std::move(root)),
      rules_(rules),
      own_(own),
      clock_(clock),
      events_(std::move(events)),
      files_(database, FilesBehind("").c_str()),
      dependents_(database, FilesBehind("AND name <= ?5 AND whole_folder AND files.id NOT IN "
                                        "(SELECT file FROM temp.gone_files) ")
                                .c_str()),
      mark_dependents_(database,
                       "UPDATE files SET uncertain = 1 WHERE whole_folder AND folder = "
                       "(SELECT id FROM folders WHERE root = ? AND key = ?)"),
      companions_(database,
                  "SELECT path, kind, size, mtime, ctime, inode, attributes FROM companions WHERE file = ?"),
      gone_(database, "INSERT OR IGNORE INTO temp.gone_files VALUES (?)"),
      gone_folders_(database,
                    "INSERT OR IGNORE INTO temp.gone_files SELECT files.id FROM folders JOIN files "
                    "ON files.folder = folders.id WHERE root = ? AND key >= ? AND key < ?"),
      gone_tail_(database,
                 "INSERT OR IGNORE INTO temp.gone_files SELECT files.id FROM folders JOIN files "
                 "ON files.folder = folders.id WHERE root = ? AND key >= ?"),
      any_file_(database,
                "SELECT 1 FROM folders JOIN files ON files.folder = folders.id WHERE root = ? LIMIT 1"),
      mounts_(database, root_.id, WithSlash(root_.path)) {}

std::optional<FoundFile> RootScan::TakeFound() {
  if (ready_.empty()) return std::nullopt;
  std::optional<FoundFile> file = std::move(ready_.front());
  ready_.pop_front();
  return file;
}

void RootScan::Fail(const std::string& path, const std::string& fault) {
  is_whole_ = false;
  events_.on_fault(path, fault);
}

// A root is a folder, or a file by itself, as identify takes them.
void RootScan::Begin() {
  has_begun_ = true;
  struct stat found {};
  if (::stat(root_.path.c_str(), &found) != 0) {
    Fail(root_.path, std::string("it cannot be walked: ") + std::strerror(errno));
    has_ended_ = true;
    return;
  }
  device_ = found.st_dev;
  const bool is_folder = S_ISDIR(found.st_mode);
  is_other_kind_ = !root_.identity.empty() && is_folder == (root_.identity == kFile);
  if (!is_folder) return BeginWithFile();
  identity_ = std::to_string(found.st_dev) + ':' + std::to_string(found.st_ino);
  if (root_.accepts_unmounted) mounts_.ForgetUnmounted();
  walk_.emplace(root_.path, WalkOptions(), events_.stopped);
}

void RootScan::BeginWithFile() {
  has_ended_ = true;
  identity_ = kFile;
  gone_tail_.Run(root_.id, Blob{kPastFirstKey});
  OpenFolder& folder = folder_.emplace();
  folder.place.path = FolderOf(root_.path);
  folder.walked.names.push_back({NameOf(root_.path)});
  folder.walked.carriers = std::make_shared<const ForkCarriers>(folder.place.path);
  // The files beside it are not looked at, so that it is not known whether they changed.
  folder.has_changed = true;
}

bool RootScan::Advance() {
  if (!has_begun_) Begin();
  if (folder_) {
    CompareSome();
    return true;
  }
  if (has_ended_) return false;
  if (auto walked = walk_->NextFolder()) {
    Enter(*std::move(walked));
    return true;
  }
  has_ended_ = true;
  if (events_.stopped()) {
    is_whole_ = false;
    return false;
  }
  LookForUnmounted();
  gone_tail_.Run(root_.id, Blob{next_key_});
  return false;
}

// A folder that a file system is mounted on is there without it, too, mostly empty. That it was one is known
// where files were found below it.
void RootScan::LookForUnmounted() {
  for (std::string path : mounts_.Unmounted()) {
    if (path.size() > 1) path.pop_back();
    Fail(path,
         "nothing is mounted there any more; files that are missing are kept (--accept-unmounted gives them "
         "up)");
  }
  const bool had_files = any_file_.With(root_.id).Step();
  any_file_.Reset();
  if (is_whole_ && !has_files_ && had_files && identity_ != root_.identity && !root_.accepts_unmounted) {
    Fail(root_.path, "it is empty, and another folder than before, as when nothing is mounted there");
  }
}

FolderOfRoot RootScan::FolderAt(const std::string& path) const {
  FolderOfRoot folder{WithSlash(path), {}};
  folder.key = folder.path.substr(WithSlash(root_.path).size());
  std::replace(folder.key.begin(), folder.key.end(), '/', '\0');
  return folder;
}

KnownRow RootScan::KnownAt(const Statement& row) const {
  const bool is_outdated = MustReadAgain(row.Integer(11), static_cast<Outcome>(row.Integer(12)));
  return {row.Integer(0),
          row.Text(1),
          KeptStamp(row, 2),
          row.Integer(8) != 0,
          row.Integer(9) != 0 || is_outdated || is_other_kind_,
          row.Integer(10) != 0};
}

void RootScan::Enter(WalkedFolder walked) {
  if (!walked.fault.empty()) Fail(walked.path, walked.fault);
  OpenFolder& folder = folder_.emplace();
  folder.place = FolderAt(walked.path);
  folder.walked = std::move(walked);
  struct stat status {};
  const int opened = folder.walked.opened;
  if (opened >= 0 && ::fstat(opened, &status) == 0) device_ = status.st_dev;
  // Folders come in the order of their keys, so that those between two neighbours hold no files any more.
  gone_folders_.Run(root_.id, Blob{next_key_}, Blob{folder.place.key});
  next_key_ = folder.place.key + '\0';
  if (folder.walked.names.empty()) return;
  has_files_ = true;
  mounts_.Enter(folder.place.key, opened);
}

// The next row of the folder; null at the end. Rows are looked up behind the last one before any name behind
// it is handed out, so that those that are written meanwhile do not come up.
const KnownRow* RootScan::NextKnown() {
  OpenFolder& folder = *folder_;
  if (folder.next_known == folder.known.size() && folder.has_more_known) {
    const std::string last = folder.known.empty() ? "" : folder.known.back().name;
    folder.known.clear();
    folder.next_known = 0;
    files_.With(root_.id, Blob{folder.place.key}, Blob{last}, kFilesAtOnce);
    while (files_.Step()) folder.known.push_back(KnownAt(files_));
    files_.Reset();
    folder.has_more_known = folder.known.size() == static_cast<std::size_t>(kFilesAtOnce);
  }
  return folder.next_known < folder.known.size() ? &folder.known[folder.next_known] : nullptr;
}

void RootScan::NoteGone(const KnownRow& known) {
  gone_.Run(known.id);
  NoteChange();
}

// Before the files that changed are written: an update that is killed then reads the dependent ones the next
// time.
void RootScan::NoteChange() {
  if (std::exchange(folder_->has_changed, true)) return;
  mark_dependents_.Run(root_.id, Blob{folder_->place.key});
}

void RootScan::CompareSome() {
  OpenFolder& folder = *folder_;
  const std::vector<WalkedFolder::Name>& names = folder.walked.names;
  if (folder.next_name == names.size()) return ReadDependents();
  const std::size_t end = std::min(names.size(), folder.next_name + static_cast<std::size_t>(kFilesAtOnce));
  while (folder.next_name < end) {
    if (events_.stopped()) return folder_.reset();
    const WalkedFolder::Name& name = names[folder.next_name++];
    const KnownRow* row = NextKnown();
    for (; row != nullptr && row->name < name.name; row = NextKnown()) {
      NoteGone(*row);
      ++folder.next_known;
    }
    const bool is_known = row != nullptr && row->name == name.name;
    CompareFile(name, is_known ? row : nullptr);
    if (is_known) ++folder.next_known;
  }
  if (folder.next_name < names.size()) return;
  for (const KnownRow* row = NextKnown(); row != nullptr; row = NextKnown()) {
    NoteGone(*row);
    ++folder.next_known;
  }
}

// Those that were passed over before anything in their folder was found changed.
void RootScan::ReadDependents() {
  OpenFolder& folder = *folder_;
  if (!folder.has_changed || folder.last_dependent.empty()) return folder_.reset();
  std::vector<KnownRow> dependents;
  dependents_.With(root_.id, Blob{folder.place.key}, Blob{folder.last_read}, kFilesAtOnce,
                   Blob{folder.last_dependent});
  while (dependents_.Step()) dependents.push_back(KnownAt(dependents_));
  dependents_.Reset();
  for (const KnownRow& each : dependents) {
    ready_.push_back(Found(each.name, false, &each));
    ready_.back().was_passed_over = true;
  }
  if (dependents.size() < static_cast<std::size_t>(kFilesAtOnce)) return folder_.reset();
  folder.last_read = dependents.back().name;
}

FoundFile RootScan::Found(const std::string& name, bool is_sidecar, const KnownRow* known) const {
  const OpenFolder& folder = *folder_;
  const std::int64_t seen_at = clock_.Now(device_);  // before the stamps are taken
  FoundFile file{folder.place,
                 name,
                 is_sidecar,
                 {},
                 StampsOf(folder.walked.carriers->PlacesFor(name)),
                 folder.walked.carriers,
                 seen_at,
                 known == nullptr ? 0 : known->id};
  file.stamp = folder.walked.opened < 0 ? StampOf(file.path()) : StampIn(folder.walked.opened, name);
  return file;
}

void RootScan::CompareFile(const WalkedFolder::Name& name, const KnownRow* known) {
  FoundFile file = Found(name.name, name.is_sidecar, known);
  const std::string path = file.path();
  if (own_.Contain(path, file.stamp.inode)) {
    if (known != nullptr) gone_.Run(known->id);
    return;
  }
  const bool is_as_known =
      known != nullptr && !known->must_be_read && IsAsKnown(path, file.stamp, known->stamp, rules_) &&
      (known->has_companions ? HasCompanionsAsKnown(known->id, file.carriers) : file.carriers.empty());
  if (!is_as_known) {
    NoteChange();
  } else if (!known->depends_on_folder) {
    return events_.on_passed_over();
  } else if (!folder_->has_changed) {
    folder_->last_dependent = name.name;
    return events_.on_passed_over();
  }
  ready_.push_back(std::move(file));
}

bool RootScan::HasCompanionsAsKnown(std::int64_t file, const Companions& carriers) {
  std::size_t carriers_known = 0;
  bool are_as_known = true;
  companions_.With(file);
  while (are_as_known && companions_.Step()) {
    const std::string path = companions_.Text(0);
    const auto carrier = carriers.find(path);
    if (carrier != carriers.end()) ++carriers_known;
    are_as_known = IsAsKnown(path, carrier != carriers.end() ? carrier->second : StampOf(path),
                             KeptStamp(companions_, 1), rules_);
  }
  companions_.Reset();
  return are_as_known && carriers_known == carriers.size();
}

}  // namespace quillmark::tool
