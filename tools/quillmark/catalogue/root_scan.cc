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

constexpr const char kFile[] = "file";
// The key that follows that of the root itself, which is empty.
constexpr std::string_view kPastFirstKey("\0", 1);

constexpr const char kFiles[] =
    "SELECT files.id, name, kind, size, mtime, ctime, inode, attributes, companions, uncertain, "
    "whole_folder, "
    "rules, outcome FROM folders JOIN files ON files.folder = folders.id "
    "WHERE root = ?1 AND key = ?2 ORDER BY name";

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
      files_(database, kFiles),
      companions_(database,
                  "SELECT path, kind, size, mtime, ctime, inode, attributes FROM companions WHERE file = ?"),
      gone_(database, "INSERT OR IGNORE INTO temp.gone_files VALUES (?)"),
      gone_folders_(database,
                    "INSERT OR IGNORE INTO temp.gone_files SELECT files.id FROM folders JOIN files "
                    "ON files.folder = folders.id WHERE root = ? AND key >= ? AND key < ?"),
      gone_tail_(database,
                 "INSERT OR IGNORE INTO temp.gone_files SELECT files.id FROM folders JOIN files "
                 "ON files.folder = folders.id WHERE root = ? AND key >= ?"),
      count_(database,
             "SELECT 1 FROM folders JOIN files ON files.folder = folders.id WHERE root = ? LIMIT 1") {}

std::optional<FoundFile> RootScan::Next() {
  if (!has_begun_) Begin();
  while (ready_.empty()) {
    if (!Advance()) return std::nullopt;
  }
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
  walk_.emplace(root_.path, WalkOptions(), events_.stopped);
}

void RootScan::BeginWithFile() {
  has_ended_ = true;
  identity_ = kFile;
  const FolderOfRoot folder{FolderOf(root_.path), ""};
  const WalkedFolder::Name name{NameOf(root_.path)};
  const std::vector<Known> known = KnownIn("");
  const Known* row = nullptr;
  for (const Known& each : known) {
    if (each.name == name.name) {
      row = &each;
    } else {
      gone_.Run(each.id);
    }
  }
  gone_tail_.Run(root_.id, Blob{kPastFirstKey});
  std::vector<FoundFile> dependents;
  CompareFile(folder, -1, name, std::make_shared<const ForkCarriers>(folder.path), row, dependents);
  // The files beside it are not looked at, so that it is not known whether they changed.
  std::move(dependents.begin(), dependents.end(), std::back_inserter(ready_));
}

bool RootScan::Advance() {
  if (has_ended_) return false;
  if (const auto walked = walk_->NextFolder()) {
    Compare(*walked);
    return true;
  }
  has_ended_ = true;
  if (events_.stopped()) {
    is_whole_ = false;
    return false;
  }
  // A folder that a file system is mounted on is there without it, too, and empty.
  const bool had_files = count_.With(root_.id).Step();
  count_.Reset();
  if (is_whole_ && !has_files_ && had_files && identity_ != root_.identity) {
    Fail(root_.path, "it is empty, and another folder than before, as when nothing is mounted there");
  }
  gone_tail_.Run(root_.id, Blob{next_key_});
  return false;
}

FolderOfRoot RootScan::FolderAt(const std::string& path) const {
  FolderOfRoot folder{WithSlash(path), {}};
  folder.key = folder.path.substr(WithSlash(root_.path).size());
  std::replace(folder.key.begin(), folder.key.end(), '/', '\0');
  return folder;
}

std::vector<RootScan::Known> RootScan::KnownIn(const std::string& key) {
  std::vector<Known> known;
  files_.With(root_.id, Blob{key});
  while (files_.Step()) {
    const bool is_outdated = MustReadAgain(files_.Integer(11), static_cast<Outcome>(files_.Integer(12)));
    known.push_back({files_.Integer(0), files_.Text(1), KeptStamp(files_, 2), files_.Integer(8) != 0,
                     files_.Integer(9) != 0 || is_outdated || is_other_kind_, files_.Integer(10) != 0});
  }
  files_.Reset();
  return known;
}

void RootScan::Compare(const WalkedFolder& walked) {
  if (!walked.fault.empty()) Fail(walked.path, walked.fault);
  const FolderOfRoot folder = FolderAt(walked.path);
  struct stat status {};
  if (walked.opened >= 0 && ::fstat(walked.opened, &status) == 0) device_ = status.st_dev;
  // Folders come in the order of their keys, so that those between two neighbours hold no files any more.
  gone_folders_.Run(root_.id, Blob{next_key_}, Blob{folder.key});
  next_key_ = folder.key + '\0';
  if (!walked.names.empty()) has_files_ = true;

  const std::vector<Known> known = KnownIn(folder.key);
  std::vector<FoundFile> dependents;  // unchanged files whose answer depends on the others
  bool has_gone = false;
  auto row = known.begin();
  for (const WalkedFolder::Name& name : walked.names) {
    if (events_.stopped()) return;
    for (; row != known.end() && row->name < name.name; ++row) {
      gone_.Run(row->id);
      has_gone = true;
    }
    const bool is_known = row != known.end() && row->name == name.name;
    CompareFile(folder, walked.opened, name, walked.carriers, is_known ? &*row : nullptr, dependents);
    if (is_known) ++row;
  }
  for (; row != known.end(); ++row) {
    gone_.Run(row->id);
    has_gone = true;
  }
  // Written before the files that changed: an update that is killed in between finds those changed again, and
  // then these.
  if (has_gone || !ready_.empty()) {
    ready_.insert(ready_.begin(), std::make_move_iterator(dependents.begin()),
                  std::make_move_iterator(dependents.end()));
  }
}

void RootScan::CompareFile(const FolderOfRoot& folder, int opened, const WalkedFolder::Name& name,
                           const std::shared_ptr<const ForkCarriers>& carriers, const Known* known,
                           std::vector<FoundFile>& dependents) {
  const std::int64_t seen_at = clock_.Now(device_);  // before the stamps are taken
  FoundFile file{folder,
                 name.name,
                 name.is_sidecar,
                 {},
                 StampsOf(carriers->PlacesFor(name.name)),
                 carriers,
                 seen_at,
                 known == nullptr ? 0 : known->id};
  const std::string path = file.path();
  file.stamp = opened < 0 ? StampOf(path) : StampIn(opened, name.name);
  if (own_.Contain(path, file.stamp.inode)) {
    if (known != nullptr) gone_.Run(known->id);
    return;
  }
  events_.on_file();
  const bool is_as_known =
      known != nullptr && !known->must_be_read && IsAsKnown(path, file.stamp, known->stamp, rules_) &&
      (known->has_companions ? HasCompanionsAsKnown(known->id, file.carriers) : file.carriers.empty());
  if (!is_as_known) {
    ready_.push_back(std::move(file));
  } else if (known->depends_on_folder) {
    dependents.push_back(std::move(file));
  }
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
