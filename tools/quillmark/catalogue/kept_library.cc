// A catalogue as the library of fonts that `same` looks into.
#include <utility>

#include "catalogue/catalogue.h"
#include "catalogue/kept_faces.h"
#include "catalogue/snapshot.h"

namespace quillmark::tool {
namespace {

LibraryFile LibraryFileOf(const KeptFile& kept) {
  LibraryFile file{kept.path, {}, static_cast<std::uint64_t>(kept.total_size)};
  for (const FaceRow& row : kept.faces) {
    LibraryFace& face = file.faces.emplace_back();
    face.index = row.face.index;
    face.post_script_name = row.face.post_script_name;
    face.kind = row.face.kind;
    face.version = row.face.version;
    face.foundry = row.face.foundry;
    face.fond_id = row.fond_id;
    face.style = row.style;
    face.checksum = row.face.checksum;
    face.bytes = CheckedBytes(row.face, row.fond_id, static_cast<std::uint64_t>(kept.size));
    face.is_variable = row.is_variable;
  }
  return file;
}

// Paths of one file are told by the file system, or where it is that of another machine, by what it said: no
// two of its files have the same number and the same time of change. The NUL keeps machines apart.
std::string IdentityOf(const KeptFile& kept) {
  if (kept.label.empty()) return FileIdentity(kept.path);
  if (kept.size <= 0) return kept.label + '\0' + kept.path;
  std::string identity = kept.label;
  for (const std::int64_t part : {kept.inode, kept.ctime, kept.size}) {
    identity += '\0' + std::to_string(part);
  }
  return identity;
}

}  // namespace

FilesOutcome AddFromCatalogue(const std::string& catalogue, Library& library,
                              std::vector<std::string>& roots) {
  Database database = OpenSnapshot(catalogue);
  FilesOutcome outcome;
  outcome.complete = TellWhetherComplete(database, catalogue);
  KeptFaces faces(database);
  while (const auto kept = faces.Next()) library.Add(LibraryFileOf(*kept), IdentityOf(*kept));

  Statement outcomes(database, "SELECT outcome, count(*) FROM files GROUP BY outcome");
  while (outcomes.Step()) {
    outcome.counts[static_cast<Outcome>(outcomes.Integer(0))] +=
        static_cast<std::size_t>(outcomes.Integer(1));
  }
  Statement paths(database, "SELECT path FROM roots WHERE label = '' ORDER BY position");
  while (paths.Step()) roots.push_back(paths.Text(0));
  return outcome;
}

}  // namespace quillmark::tool
