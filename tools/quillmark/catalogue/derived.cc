#include "catalogue/derived.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "catalogue/database.h"
#include "catalogue/face_rows.h"

namespace quillmark::tool {
namespace {

constexpr std::int64_t kFilesAtATime = 1000;

// Files with faces, in the order of their numbers.
std::vector<std::int64_t> FilesAfter(Statement& files, std::int64_t last) {
  std::vector<std::int64_t> found;
  files.With(last, kFilesAtATime);
  while (files.Step()) found.push_back(files.Integer(0));
  files.Reset();
  return found;
}

void DeriveAll(Database& database) {
  FaceTable faces(database);
  Statement files(database, "SELECT id FROM files WHERE id > ? ORDER BY id LIMIT ?");
  for (std::int64_t last = 0;;) {
    const std::vector<std::int64_t> ids = FilesAfter(files, last);
    if (ids.empty()) return;
    last = ids.back();
    Transaction transaction(database);
    for (const std::int64_t id : ids) {
      for (FaceRow& row : faces.Read(id)) {
        if (DeriveAnew(row)) faces.WriteDerived(id, row);
      }
    }
    transaction.Commit();
  }
}

}  // namespace

void DeriveAnewFor(Database& database, const std::string& tables) {
  Statement find(database, "SELECT 1 FROM meta WHERE name = 'tables' AND value = ?");
  const bool are_these = find.With(std::string_view(tables)).Step();
  find.Reset();
  if (are_these) return;
  DeriveAll(database);
  Transaction transaction(database);
  // Of PostScript outlines the text itself is chosen by the table of foundries. Those of other machines stay
  // as they are.
  database.Run(
      "UPDATE files SET uncertain = 1 WHERE id IN (SELECT file FROM faces WHERE printer_font IS NOT NULL "
      "OR kind IN ('PostScript', 'PostScript - MM', 'CID', 'OCF')) AND folder IN (SELECT folders.id FROM "
      "folders "
      "JOIN roots ON roots.id = folders.root WHERE label = '')");
  Statement(database, "INSERT OR REPLACE INTO meta (name, value) VALUES ('tables', ?)")
      .Run(std::string_view(tables));
  transaction.Commit();
}

}  // namespace quillmark::tool
