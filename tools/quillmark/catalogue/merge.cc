// quillmark catalogue merge: takes the files of other machines' catalogues into one, each under a label.
// Updates leave them alone.
#include <chrono>
#include <iostream>
#include <string_view>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/face_rows.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

// Copies what another catalogue keeps of its own roots.
class Merger {
 public:
  Merger(Database& target, Database& source, std::int64_t run)
      : source_(source), run_(run), target_(target), read_(source), write_(target) {}

  void Copy(const std::string& label) {
    Statement(target_, "DELETE FROM roots WHERE label = ?").Run(std::string_view(label));
    Statement roots(source_,
                    "SELECT id, path, position, fault FROM roots WHERE label = '' ORDER BY position");
    Statement add(target_, "INSERT INTO roots (label, path, position, fault) VALUES (?, ?, ?, ?)");
    while (roots.Step()) {
      const std::string fault = roots.Text(3);
      add.Run(std::string_view(label), Blob{roots.Text(1)}, roots.Integer(2),
              roots.IsNull(3) ? std::nullopt : std::optional<std::string_view>(fault));
      CopyFolders(roots.Integer(0), target_.last_id());
    }
  }

 private:
  void CopyFolders(std::int64_t from, std::int64_t to) {
    Statement folders(source_, "SELECT id, key, path FROM folders WHERE root = ?");
    Statement add(target_, "INSERT INTO folders (root, key, path) VALUES (?, ?, ?)");
    folders.With(from);
    while (folders.Step()) {
      add.Run(to, Blob{folders.Text(1)}, Blob{folders.Text(2)});
      CopyFiles(folders.Integer(0), target_.last_id());
    }
  }

  void CopyFiles(std::int64_t from, std::int64_t to) {
    files_.With(from);
    while (files_.Step()) {
      const std::string reason = files_.Text(9);
      add_file_.Run(to, Blob{files_.Text(1)}, files_.Integer(2), files_.Integer(3), files_.Integer(4),
                    files_.Integer(5), files_.Integer(6), files_.Integer(7), files_.Integer(8),
                    files_.IsNull(9) ? std::nullopt : std::optional<std::string_view>(reason),
                    files_.IsNull(10) ? std::nullopt : std::optional<std::int64_t>(files_.Integer(10)),
                    files_.Integer(11), run_);
      write_.Replace(target_.last_id(), read_.Read(files_.Integer(0)));
    }
  }

  Database& source_;
  const std::int64_t run_;
  Database& target_;
  FaceTable read_, write_;
  Statement files_{
      source_,
      "SELECT id, name, kind, size, mtime, ctime, inode, attributes, outcome, reason, listed, total_size "
      "FROM files WHERE folder = ?"};
  Statement add_file_{
      target_,
      "INSERT INTO files (folder, name, kind, size, mtime, ctime, inode, attributes, outcome, reason, "
      "listed, total_size, added, changed, companions, uncertain, whole_folder, rules) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?13, 0, 0, 0, 0)"};
};

}  // namespace

int MergeCatalogues(const CatalogueMerge& merge) {
  UpdatedCatalogue catalogue(merge.catalogue, UpdatedCatalogue::IfMissing::kMake);
  Database& database = catalogue.database();
  // All parts or none.
  Transaction transaction(database);
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
  Statement(database, "INSERT INTO runs (started, ended) VALUES (?1, ?1)").Run(seconds);
  const std::int64_t run = database.last_id();
  for (const CatalogueMerge::Part& part : merge.parts) {
    if (CataloguePath(part.catalogue) == database.path()) {
      throw DatabaseError(Printable(part.catalogue) + ": a catalogue cannot be merged into itself");
    }
    Database other = OpenCatalogue(part.catalogue);
    Merger(database, other, run).Copy(part.label);
  }
  transaction.Commit();
  return 0;
}

}  // namespace quillmark::tool
