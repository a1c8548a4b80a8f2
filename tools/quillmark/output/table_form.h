// Faces as a table for people, one row a face.
#ifndef QUILLMARK_TOOL_OUTPUT_TABLE_FORM_H_
#define QUILLMARK_TOOL_OUTPUT_TABLE_FORM_H_

#include <ostream>
#include <vector>

#include "faces/face.h"
#include "faces/fields.h"
#include "output/table.h"
#include "text/terminal.h"

namespace quillmark::tool {

// The named fields, or, without any, the usual ones: as many of those as there is room for. Keeps the cells
// of a face, not the face.
class FaceTable {
 public:
  explicit FaceTable(std::vector<const Field*> fields);

  // All of them, or none when there is too little memory.
  void Add(const std::vector<Face>& faces);
  // Nothing without faces.
  void Write(std::ostream& out, TerminalLook look);

 private:
  bool are_usual_;
  std::vector<const Field*> fields_;
  Table table_;
  bool has_several_ = false;  // faces in one file
};

}  // namespace quillmark::tool

#endif
