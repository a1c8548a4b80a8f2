// The lists over a library of fonts, as tables for people, and as one JSON object or tab-separated values for
// programs.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_FORMS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_FORMS_H_

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <ostream>
#include <vector>

#include "library/library.h"
#include "library/library_lists.h"

namespace quillmark::tool {

// Which lists are written.
struct LibraryLists {
  std::optional<std::vector<Copy>> copies;
  std::optional<std::vector<Group>> conflicts, formats, versions, near;
};

// The lists of groups in the order of JSON and TSV: their names, and what the parts of their groups are.
struct GroupList {
  const char* name;
  const char* parts;
  std::optional<std::vector<Group>> LibraryLists::*groups;
};
inline constexpr GroupList kGroupLists[] = {{"conflicts", "data", &LibraryLists::conflicts},
                                            {"formats", "formats", &LibraryLists::formats},
                                            {"versions", "versions", &LibraryLists::versions},
                                            {"near", "names", &LibraryLists::near}};

// A face as JSON and TSV have it.
nlohmann::ordered_json FaceObject(Library& library, const LibraryFace& face);

void WriteLibraryTables(std::ostream& out, Library& library, const LibraryLists& lists);
void WriteLibraryJson(std::ostream& out, Library& library, const LibraryLists& lists);
void WriteLibraryTsv(std::ostream& out, Library& library, const LibraryLists& lists);

}  // namespace quillmark::tool

#endif
