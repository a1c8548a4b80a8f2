// quillmark catalogue merge: takes the files of other machines' catalogues into one, each under a label.
// Updates leave them alone. Tests: tests/cli/merge_test.py.
#include <algorithm>
#include <deque>
#include <filesystem>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/derived.h"
#include "catalogue/face_rows.h"
#include "catalogue/prune.h"
#include "catalogue/snapshot.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr const char kOwnRoots[] =
    "SELECT id, path, position, identity, fault FROM roots WHERE label = '' ORDER BY position";
constexpr const char kFilesOfFolder[] =
    "SELECT id, name, kind, size, mtime, ctime, inode, attributes, outcome, reason, listed, total_size "
    "FROM files WHERE folder = ?";

std::optional<std::string> TextOrNull(const Statement& row, int column) {
  if (row.IsNull(column)) return std::nullopt;
  return row.Text(column);
}

std::optional<std::int64_t> IntegerOrNull(const Statement& row, int column) {
  if (row.IsNull(column)) return std::nullopt;
  return row.Integer(column);
}

// Opens the catalogue of another machine, if it is sound, and names what of it is not taken in.
Database OpenPart(const std::string& catalogue) {
  Database part = OpenSnapshot(catalogue);
  Statement check(part, "PRAGMA quick_check(1)");
  const bool is_sound = check.Step() && check.Text(0) == "ok";
  if (!is_sound || part.Number("SELECT 1 FROM faces WHERE face NOT BETWEEN 0 AND 0xFFFFFFFF LIMIT 1")) {
    throw DatabaseError(Printable(catalogue) + ": a damaged catalogue; make it anew");
  }
  std::string others;
  Statement labels(part, "SELECT DISTINCT label FROM roots WHERE label <> '' ORDER BY label");
  while (labels.Step()) others += (others.empty() ? "" : ", ") + Printable(labels.Text(0));
  if (!others.empty()) {
    std::cerr << Printable(catalogue) + ": what it holds of other machines is not taken in: " + others + '\n';
  }
  return part;
}

struct MergeCounts {
  std::int64_t added = 0, changed = 0, gone = 0, unreadable = 0;
};

// Copies what another catalogue keeps of its own roots, in the place of what the label stood for.
class Merger {
 public:
  Merger(Database& target, Database& source, const std::string& label, const CatalogueMerge& merge,
         std::int64_t run, MergeCounts& counts)
      : label_(label),
        // A label that is given holds no slash, so that none is like this.
        old_label_(label + '/'),
        run_(run),
        counts_(counts),
        target_(target),
        source_(source),
        read_(source),
        write_(target) {
    Statement tables(source, "SELECT 1 FROM meta WHERE name = 'tables' AND value = ?");
    has_these_tables_ = tables.With(std::string_view(merge.tables)).Step();
  }

  void Copy() {
    Statement(target_, "UPDATE roots SET label = ? WHERE label = ?")
        .Run(std::string_view(old_label_), std::string_view(label_));
    // First, since another root of the source may have the same files: those are not gone.
    RemoveOldRoots(RootPaths());
    Statement roots(source_, kOwnRoots);
    Statement add(target_,
                  "INSERT INTO roots (label, path, position, identity, fault) VALUES (?, ?, ?, ?, ?)");
    while (roots.Step()) {
      root_ = roots.Text(1);
      add.Run(std::string_view(label_), Blob{root_}, roots.Integer(2), TextOrNull(roots, 3),
              TextOrNull(roots, 4));
      CopyFolders(roots.Integer(0), target_.last_id());
    }
    RemoveOldRoots({});
  }

 private:
  void CopyFolders(std::int64_t from, std::int64_t to) {
    folders_.With(from);
    while (folders_.Step()) {
      key_ = folders_.Text(1);
      path_ = folders_.Text(2);
      add_folder_.Run(to, Blob{key_}, Blob{path_});
      CopyFiles(folders_.Integer(0), target_.last_id());
    }
  }

  void CopyFiles(std::int64_t from, std::int64_t to) {
    files_.With(from);
    while (files_.Step()) {
      std::vector<FaceRow> faces = read_.Read(files_.Integer(0));
      for (FaceRow& face : faces) {
        if (!has_these_tables_) DeriveAnew(face);
      }
      const Runs runs = TakeOldFile(faces);
      add_file_.Run(to, Blob{files_.Text(1)}, files_.Integer(2), files_.Integer(3), files_.Integer(4),
                    files_.Integer(5), files_.Integer(6), files_.Integer(7), files_.Integer(8),
                    TextOrNull(files_, 9), IntegerOrNull(files_, 10), files_.Integer(11), runs.added,
                    runs.changed);
      write_.Add(target_.last_id(), faces);
      if (files_.Integer(8) == static_cast<std::int64_t>(Outcome::kUnreadable)) ++counts_.unreadable;
    }
  }

  struct Runs {
    std::int64_t added = 0, changed = 0;
  };
  // Removes the row that the file at hand had. Tells when it was found new, and when it gave these faces, as
  // far as the target knows.
  Runs TakeOldFile(const std::vector<FaceRow>& faces) {
    const std::string name = files_.Text(1);
    old_file_.With(std::string_view(old_label_), Blob{root_}, Blob{key_}, Blob{name}, files_.Integer(8),
                   TextOrNull(files_, 9), IntegerOrNull(files_, 10));
    if (!old_file_.Step()) {
      old_file_.Reset();
      ++counts_.added;
      forget_gone_.With(Blob{label_ + ':' + path_ + name});
      while (forget_gone_.Step()) {
        if (forget_gone_.Integer(0) == run_) --counts_.gone;
      }
      forget_gone_.Reset();
      return {run_, run_};
    }
    Runs runs{old_file_.Integer(1), old_file_.Integer(2)};
    const std::int64_t old_id = old_file_.Integer(0);
    const bool is_same = old_file_.Integer(3) != 0 && HasFaces(old_id, faces);
    old_file_.Reset();
    remove_.Run(old_id);
    if (!is_same) {
      ++counts_.changed;
      runs.changed = run_;
    }
    return runs;
  }

  bool HasFaces(std::int64_t file, const std::vector<FaceRow>& faces) {
    const std::vector<FaceRow> known = write_.Read(file);
    return std::equal(faces.begin(), faces.end(), known.begin(), known.end(),
                      [](const FaceRow& a, const FaceRow& b) { return a.Equals(b); });
  }

  std::set<std::string> RootPaths() {
    std::set<std::string> paths;
    Statement roots(source_, kOwnRoots);
    while (roots.Step()) paths.insert(roots.Text(1));
    return paths;
  }

  // With the files that they still have, which are gone.
  void RemoveOldRoots(const std::set<std::string>& but_those_of) {
    std::vector<std::int64_t> removed;
    Statement roots(target_, "SELECT id, path FROM roots WHERE label = ?");
    roots.With(std::string_view(old_label_));
    while (roots.Step()) {
      if (!but_those_of.contains(roots.Text(1))) removed.push_back(roots.Integer(0));
    }
    for (const std::int64_t root : removed) {
      Statement(target_, R"(
INSERT INTO gone (run, root, path)
SELECT ?1, roots.path, CAST(?2 || ':' || folders.path || files.name AS BLOB)
FROM roots JOIN folders ON folders.root = roots.id JOIN files ON files.folder = folders.id
WHERE roots.id = ?3)")
          .Run(run_, std::string_view(label_), root);
      counts_.gone += target_.Number("SELECT changes()").value_or(0);
      Statement(target_, "DELETE FROM roots WHERE id = ?").Run(root);
    }
  }

  const std::string label_, old_label_;
  const std::int64_t run_;
  MergeCounts& counts_;
  bool has_these_tables_ = false;
  std::string root_, key_, path_;  // where the file at hand is
  Database& target_;
  Database& source_;
  FaceTable read_, write_;
  Statement folders_{source_, "SELECT id, key, path FROM folders WHERE root = ?"};
  Statement files_{source_, kFilesOfFolder};
  Statement add_folder_{target_, "INSERT INTO folders (root, key, path) VALUES (?, ?, ?)"};
  Statement add_file_{
      target_,
      "INSERT INTO files (folder, name, kind, size, mtime, ctime, inode, attributes, outcome, reason, "
      "listed, total_size, added, changed, companions, uncertain, whole_folder, rules) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, 0, 0, 0)"};
  Statement old_file_{target_,
                      "SELECT files.id, added, changed, outcome = ?5 AND reason IS ?6 AND listed IS ?7 "
                      "FROM roots JOIN folders ON folders.root = roots.id "
                      "JOIN files ON files.folder = folders.id "
                      "WHERE label = ?1 AND roots.path = ?2 AND key = ?3 AND name = ?4"};
  Statement remove_{target_, "DELETE FROM files WHERE id = ?"};
  Statement forget_gone_{target_, "DELETE FROM gone WHERE path = ? RETURNING run"};
};

}  // namespace

int MergeCatalogues(const CatalogueMerge& merge) {
  // All are looked at before anything is written.
  std::deque<Database> sources;
  for (const CatalogueMerge::Part& part : merge.parts) {
    std::error_code error;
    if (std::filesystem::equivalent(part.catalogue, merge.catalogue, error)) {
      throw DatabaseError(Printable(part.catalogue) + ": a catalogue cannot be merged into itself");
    }
    sources.push_back(OpenPart(part.catalogue));
  }
  UpdatedCatalogue catalogue(merge.catalogue, UpdatedCatalogue::IfMissing::kMake);
  Database& database = catalogue.database();
  DeriveAnewFor(database, merge.tables);

  Transaction transaction(database);
  Statement(database, "INSERT INTO runs (started) VALUES (strftime('%s', 'now'))").Run();
  const std::int64_t run = database.last_id();
  MergeCounts counts;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    Merger(database, sources[i], merge.parts[i].label, merge, run, counts).Copy();
  }
  Statement(database,
            "UPDATE runs SET ended = strftime('%s', 'now'), added = ?, changed = ?, gone = ?, unreadable = ? "
            "WHERE id = ?")
      .Run(counts.added, counts.changed, counts.gone, counts.unreadable, run);
  transaction.Commit();
  Prune(database, counts.changed + counts.gone > 0);
  catalogue.Finish();
  return 0;
}

}  // namespace quillmark::tool
