#include "catalogue/kept_faces.h"

namespace quillmark::tool {
namespace {

std::string FilesQuery() {
  return std::string("SELECT files.id, label, ") + kLabelPrefix +
         R"(, folders.path, name, size, ctime, inode, total_size
FROM roots JOIN folders ON folders.root = roots.id JOIN files ON files.folder = folders.id
WHERE EXISTS (SELECT 1 FROM faces WHERE file = files.id) ORDER BY label, position, key, name)";
}

}  // namespace

KeptFaces::KeptFaces(Database& database) : files_(database, FilesQuery().c_str()), faces_(database) {}

std::optional<KeptFile> KeptFaces::Next() {
  while (files_.Step()) {
    KeptFile file{files_.Text(1),
                  files_.Text(2) + files_.Text(3) + files_.Text(4),
                  files_.Integer(5),
                  files_.Integer(6),
                  files_.Integer(7),
                  files_.Integer(8),
                  {}};
    file.faces = faces_.Read(files_.Integer(0));
    for (FaceRow& row : file.faces) row.face.path = file.path;
    // None only where the file is damaged and its parts disagree.
    if (!file.faces.empty()) return file;
  }
  return std::nullopt;
}

}  // namespace quillmark::tool
