#include "catalogue/kept_faces.h"

namespace quillmark::tool {

KeptFaces::KeptFaces(Database& database)
    : files_(
          database,
          "SELECT files.id, label, folders.path, name, size, inode FROM roots JOIN folders ON folders.root = "
          "roots.id "
          "JOIN files ON files.folder = folders.id WHERE EXISTS (SELECT 1 FROM faces WHERE file = files.id) "
          "ORDER BY label, position, key, name"),
      faces_(database) {}

std::optional<KeptFile> KeptFaces::Next() {
  if (!files_.Step()) return std::nullopt;
  KeptFile file{files_.Integer(0), files_.Text(1),    files_.Text(2) + files_.Text(3),
                files_.Integer(4), files_.Integer(5), {}};
  if (!file.label.empty()) file.path = file.label + ':' + file.path;
  file.faces = faces_.Read(file.id);
  for (FaceRow& row : file.faces) row.face.path = file.path;
  return file;
}

}  // namespace quillmark::tool
