// A catalogue as the library of fonts that `same` looks into.
#include <memory>
#include <utility>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/kept_faces.h"

namespace quillmark::tool {
namespace {

LibraryFile LibraryFileOf(const KeptFile& kept) {
  LibraryFile file{kept.path, {}, kept.id};
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
  }
  return file;
}

// Paths of one file are told by the file system, or by inode numbers where it is that of another machine.
std::string IdentityOf(const KeptFile& kept) {
  if (kept.label.empty()) return FileIdentity(kept.path);
  return kept.label + ':' + (kept.size > 0 ? std::to_string(kept.inode) : kept.path);
}

}  // namespace

FilesOutcome AddFromCatalogue(const std::string& catalogue, Library& library,
                              std::vector<std::string>& roots) {
  Database database = OpenCatalogue(catalogue);
  KeptFaces faces(database);
  while (const auto kept = faces.Next()) library.Add(LibraryFileOf(*kept), IdentityOf(*kept));

  FilesOutcome outcome;
  Statement outcomes(database, "SELECT outcome, count(*) FROM files GROUP BY outcome");
  while (outcomes.Step()) {
    const auto kind = static_cast<Outcome>(outcomes.Integer(0));
    if (kind == Outcome::kUnreadable) outcome.complete = false;
    outcome.counts[kind] += static_cast<std::size_t>(outcomes.Integer(1));
  }
  Statement paths(database, "SELECT path, fault FROM roots WHERE label = '' ORDER BY position");
  while (paths.Step()) {
    roots.push_back(paths.Text(0));
    if (!paths.IsNull(1)) outcome.complete = false;
  }
  return outcome;
}

LibraryDetails::Read DetailsFromCatalogue(const std::string& catalogue) {
  const auto database = std::make_shared<Database>(OpenCatalogue(catalogue));
  return [database](const LibraryFile& file) {
    FileDetails details;
    Statement size(*database, "SELECT total_size FROM files WHERE id = ?");
    if (size.With(file.catalogue_id).Step()) details.file_size = static_cast<std::uint64_t>(size.Integer(0));
    details.variable.resize(file.faces.size());
    Statement faces(*database, "SELECT face, is_variable FROM faces WHERE file = ?");
    faces.With(file.catalogue_id);
    while (faces.Step()) {
      const auto face = static_cast<std::size_t>(faces.Integer(0));
      if (face < details.variable.size()) details.variable[face] = faces.Integer(1) != 0;
    }
    return details;
  };
}

}  // namespace quillmark::tool
