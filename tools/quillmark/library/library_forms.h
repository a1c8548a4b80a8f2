// The lists over a library of fonts, as tables for people, and as one JSON object or tab-separated values for
// programs.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_FORMS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_FORMS_H_

#include <optional>
#include <ostream>
#include <vector>

#include "library/library_details.h"
#include "library/library_lists.h"

namespace quillmark::tool {

// Which lists are written.
struct LibraryLists {
  std::optional<std::vector<Copy>> copies;
  std::optional<std::vector<Group>> conflicts, formats, versions, near;
};

void WriteLibraryTables(std::ostream& out, const Library& library, LibraryDetails& details,
                        const LibraryLists& lists);
void WriteLibraryJson(std::ostream& out, const Library& library, LibraryDetails& details,
                      const LibraryLists& lists);
void WriteLibraryTsv(std::ostream& out, const Library& library, LibraryDetails& details,
                     const LibraryLists& lists);

}  // namespace quillmark::tool

#endif
