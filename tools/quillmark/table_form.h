// Faces as a table for people: one row a face, columns aligned, narrowed to the terminal when there is one.
#ifndef QUILLMARK_TOOL_TABLE_FORM_H_
#define QUILLMARK_TOOL_TABLE_FORM_H_

#include <ostream>
#include <string>
#include <vector>

#include "face.h"
#include "fields.h"
#include "terminal.h"

namespace quillmark::tool {

struct Column {
  std::string title;
  bool keep_end = false;  // when narrowed: a path is recognised by its end, a name by its beginning
};

// Writes rows of as many cells as columns.
void WriteTable(std::ostream& out, const std::vector<Column>& columns,
                const std::vector<std::vector<std::string>>& rows, TerminalLook look);

// The table of faces, of the named fields or of the usual ones. Of those, columns that only faces of resource
// files fill are left out when none does.
void WriteFaceTable(std::ostream& out, const std::vector<Face>& faces, std::vector<const Field*> fields,
                    TerminalLook look);

}  // namespace quillmark::tool

#endif
