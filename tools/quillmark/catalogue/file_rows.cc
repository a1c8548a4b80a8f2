#include "catalogue/file_rows.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "api/font_array.h"
#include "catalogue/reading_rules.h"
#include "library/library.h"
#include "reasons/fork_places.h"

namespace quillmark::tool {
namespace {

std::optional<std::string_view> ReasonOf(const Explanation& explanation) {
  if (explanation.reason.empty()) return std::nullopt;
  return explanation.reason;
}

std::optional<std::int64_t> ListedOf(const Explanation& explanation) {
  if (!explanation.listed) return std::nullopt;
  return *explanation.listed;
}

// The reason that is given for a sidecar names the file it belongs to, and so depends on it.
void AddOwner(const std::string& path, Companions& companions) {
  const bool may_be_sidecar = path.find("/._") != std::string::npos ||
                              path.find("/.AppleDouble/") != std::string::npos ||
                              path.find("/__MACOSX/") != std::string::npos;
  if (!may_be_sidecar) return;
  const std::string owner = OwnerOfSidecar(path).native();
  if (owner != path) companions.emplace(owner, StampOf(owner));
}

}  // namespace

std::uint64_t TotalSizeOf(const IdentifiedFile& file, const FileSystem& system) {
  if (!file.array) return 0;
  const std::uint64_t size = SizeOfFile(file.faces);
  return size > 0 ? size : ReadFileSize(file.source.path, system);
}

FileTable::FileTable(Database& database, std::int64_t run, StampRules rules)
    : database_(database),
      run_(run),
      rules_(rules),
      faces_(database),
      add_folder_(database,
                  "INSERT INTO folders (root, key, path) VALUES (?, ?, ?) "
                  "ON CONFLICT DO UPDATE SET path = excluded.path RETURNING id"),
      add_(
          database,
          R"(INSERT INTO files (kind, size, mtime, ctime, inode, attributes, companions, uncertain, whole_folder, rules,
                                 outcome, reason, listed, total_size, changed, added, folder, name)
              VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?15, ?16, ?17))"),
      change_(
          database,
          R"(UPDATE files SET kind = ?, size = ?, mtime = ?, ctime = ?, inode = ?, attributes = ?, companions = ?,
                                  uncertain = ?, whole_folder = ?, rules = ?, outcome = ?, reason = ?, listed = ?,
                                  total_size = ?, changed = coalesce(?, changed) WHERE id = ?)"),
      answer_(database, "SELECT outcome, reason, listed FROM files WHERE id = ?"),
      remove_companions_(database, "DELETE FROM companions WHERE file = ?"),
      add_companion_(database,
                     "INSERT INTO companions (file, path, kind, size, mtime, ctime, inode, attributes) "
                     "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
      forget_gone_(database, "DELETE FROM gone WHERE path = ?") {}

// Whether the file changed since the stamp was taken in a way that the next update may not see. By the usual
// rules it sees every change, as the stamp is from before the file was read.
bool FileTable::MayHideChange(const std::string& path, const Stamp& before) const {
  if (!rules_.ignore_ctime && !rules_.ignore_inode) return false;
  Stamp after = StampOf(path);
  after.attributes = before.attributes;
  return after != before;
}

std::int64_t FileTable::FolderId(std::int64_t root, const FolderOfRoot& folder) {
  if (last_folder_ != 0 && last_root_ == root && last_key_ == folder.key) return last_folder_;
  add_folder_.With(root, Blob{folder.key}, Blob{folder.path});
  add_folder_.Step();
  last_folder_ = add_folder_.Integer(0);
  add_folder_.Reset();
  last_root_ = root;
  last_key_ = folder.key;
  return last_folder_;
}

bool FileTable::IsSameAnswer(std::int64_t id, const Explanation& explanation,
                             const std::vector<FaceRow>& rows) {
  if (!answer_.With(id).Step()) return false;
  const bool is_same = answer_.Integer(0) == static_cast<std::int64_t>(explanation.outcome) &&
                       answer_.Text(1) == explanation.reason && answer_.IsNull(2) == !explanation.listed &&
                       answer_.Integer(2) == ListedOf(explanation).value_or(0);
  answer_.Reset();
  if (!is_same) return false;
  const std::vector<FaceRow> known = faces_.Read(id);
  return std::equal(rows.begin(), rows.end(), known.begin(), known.end(),
                    [](const FaceRow& a, const FaceRow& b) { return a.Equals(b); });
}

FileChange FileTable::Write(std::int64_t root, const FoundFile& found, const IdentifiedFile& file,
                            std::uint64_t total_size, Recording* recording) {
  const std::string path = found.path();
  const Explanation& explanation = file.explanation;
  Stamp stamp = found.stamp;
  Companions companions = recording != nullptr ? recording->Taken() : Companions();
  companions.insert(found.carriers.begin(), found.carriers.end());
  AddOwner(path, companions);

  // What could not be read may be readable the next time.
  bool is_uncertain = explanation.outcome == Outcome::kUnreadable || explanation.may_pass;
  is_uncertain |= IsUncertainAt(stamp, found.seen_at) || MayHideChange(path, stamp);
  for (auto& [companion, its_stamp] : companions) {
    is_uncertain |= IsUncertainAt(its_stamp, found.seen_at) || MayHideChange(companion, its_stamp);
    if (its_stamp.kind == Stamp::kRegular) its_stamp.attributes = AttributesOf(companion);
  }
  const bool has_no_attributes = recording != nullptr && recording->has_no_attributes();
  if (stamp.kind == Stamp::kRegular && !has_no_attributes) stamp.attributes = AttributesOf(path);

  const std::vector<FaceRow> rows = file.array ? RowsOf(file.faces, *file.array) : std::vector<FaceRow>();
  const bool is_same = found.known_id != 0 && IsSameAnswer(found.known_id, explanation, rows);
  const FileChange change = found.known_id == 0 ? FileChange::kAdded
                            : is_same           ? FileChange::kSame
                                                : FileChange::kChanged;
  const auto size = static_cast<std::int64_t>(total_size);
  const std::int64_t folder = FolderId(root, found.folder);
  const auto bit = [](bool value) { return std::int64_t{value}; };
  std::int64_t id = found.known_id;
  if (id == 0) {
    add_.Run(stamp.kind, stamp.size, stamp.mtime, stamp.ctime, stamp.inode, stamp.attributes,
             bit(!companions.empty()), bit(is_uncertain), bit(explanation.depends_on_folder), kReadingRules,
             static_cast<std::int64_t>(explanation.outcome), ReasonOf(explanation), ListedOf(explanation),
             size, run_, folder, Blob{found.name});
    id = database_.last_id();
    forget_gone_.Run(Blob{path});
  } else {
    const auto run = is_same ? std::nullopt : std::optional(run_);
    change_.Run(stamp.kind, stamp.size, stamp.mtime, stamp.ctime, stamp.inode, stamp.attributes,
                bit(!companions.empty()), bit(is_uncertain), bit(explanation.depends_on_folder),
                kReadingRules, static_cast<std::int64_t>(explanation.outcome), ReasonOf(explanation),
                ListedOf(explanation), size, run, id);
    remove_companions_.Run(id);
  }
  for (const auto& [companion, its] : companions) {
    add_companion_.Run(id, Blob{companion}, its.kind, its.size, its.mtime, its.ctime, its.inode,
                       its.attributes);
  }
  if (change == FileChange::kAdded) {
    faces_.Add(id, rows);
  } else if (!is_same) {
    faces_.Replace(id, rows);
  }
  return change;
}

}  // namespace quillmark::tool
