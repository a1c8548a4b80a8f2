// Faces as a table for people: one row a face, columns aligned, narrowed to the terminal when there is one.
#ifndef QUILLMARK_TOOL_TABLE_FORM_H_
#define QUILLMARK_TOOL_TABLE_FORM_H_

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "face.h"

namespace quillmark::tool {

struct Column {
  std::string title;
  bool keep_end = false;  // when narrowed: a path is recognised by its end, a name by its beginning
};

// Writes rows of as many cells as columns. `width` is in columns of the terminal, 0 for no limit.
void WriteTable(std::ostream& out, const std::vector<Column>& columns,
                const std::vector<std::vector<std::string>>& rows, std::size_t width);

// The table of faces. Columns that only faces of resource files fill are left out when none does.
void WriteFaceTable(std::ostream& out, const std::vector<Face>& faces, std::size_t width);

// Columns of the terminal that standard output is, or 0 when it is none.
std::size_t TerminalWidth();

}  // namespace quillmark::tool

#endif
