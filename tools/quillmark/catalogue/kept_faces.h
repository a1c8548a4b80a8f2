// KeptFaces: the faces of a catalogue, file by file, in the order in which identify walks its roots.
#ifndef QUILLMARK_TOOL_CATALOGUE_KEPT_FACES_H_
#define QUILLMARK_TOOL_CATALOGUE_KEPT_FACES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/database.h"
#include "catalogue/face_rows.h"

namespace quillmark::tool {

// What stands before the paths of other machines, as "attic:/fonts/a.ttf"; an expression over a row of roots.
inline constexpr char kLabelPrefix[] = "CASE WHEN label = '' THEN '' ELSE label || ':' END";

struct KeptFile {
  std::string label, path;  // the path with the label of another machine before it
  std::int64_t size = 0, ctime = 0, inode = 0;
  std::int64_t total_size = 0;  // of both forks
  std::vector<FaceRow> faces;   // their paths set; at least one
};

class KeptFaces {
 public:
  explicit KeptFaces(Database& database);
  std::optional<KeptFile> Next();

 private:
  Statement files_;
  FaceTable faces_;
};

}  // namespace quillmark::tool

#endif
