// The lists over a library of fonts, as tables for people and as one JSON object for programs.
#ifndef QUILLMARK_TOOL_LIBRARY_FORMS_H_
#define QUILLMARK_TOOL_LIBRARY_FORMS_H_

#include <optional>
#include <ostream>
#include <vector>

#include "library_lists.h"

namespace quillmark::tool {

struct LibraryLists {
  std::vector<Copy> copies;
  std::vector<Group> conflicts, versions;
  std::optional<std::vector<Group>> near;  // when asked for
};

void WriteLibraryTables(std::ostream& out, const Library& library, const LibraryLists& lists);
void WriteLibraryJson(std::ostream& out, const Library& library, const LibraryLists& lists);

}  // namespace quillmark::tool

#endif
