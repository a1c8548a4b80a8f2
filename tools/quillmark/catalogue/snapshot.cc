#include "catalogue/snapshot.h"

#include <cstddef>
#include <iostream>

#include "catalogue/catalogue_file.h"
#include "files/identify_files.h"
#include "text/printable.h"

namespace quillmark::tool {

Database OpenSnapshot(const std::string& path) {
  Database database = OpenCatalogue(path);
  database.Run("BEGIN");
  return database;
}

bool TellWhetherComplete(Database& database, const std::string& catalogue) {
  std::string lacks;
  const auto look = [&](const std::string& query, const char* thing, const char* fault) {
    const auto count = static_cast<std::size_t>(database.Number(query.c_str()).value_or(0));
    if (count > 0) lacks += (lacks.empty() ? "" : ", ") + Counted(count, thing) + fault;
  };
  look("SELECT count(*) FROM roots WHERE fault IS NOT NULL OR identity IS NULL", "root", " not walked whole");
  look("SELECT count(*) FROM files WHERE outcome = " + std::to_string(static_cast<int>(Outcome::kUnreadable)),
       "file", " that could not be read");
  // As identify ends with status 1 for a named file of which it tells so.
  look(
      "SELECT count(*) FROM roots CROSS JOIN folders ON folders.root = roots.id "
      "CROSS JOIN files ON files.folder = folders.id WHERE identity = 'file' AND outcome NOT IN (" +
          std::to_string(static_cast<int>(Outcome::kFaces)) + ", " +
          std::to_string(static_cast<int>(Outcome::kUnreadable)) + ")",
      "root", " not giving all faces");
  if (!lacks.empty()) std::cerr << Printable(catalogue) + ": the catalogue is not complete: " + lacks + '\n';
  return lacks.empty();
}

}  // namespace quillmark::tool
