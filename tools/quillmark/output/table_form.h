// Faces as a table for people, one row a face.
#ifndef QUILLMARK_TOOL_OUTPUT_TABLE_FORM_H_
#define QUILLMARK_TOOL_OUTPUT_TABLE_FORM_H_

#include <memory>
#include <ostream>
#include <vector>

#include "faces/fields.h"
#include "output/face_writer.h"

namespace quillmark::tool {

// The named fields, or, without any, the usual ones: as many of those as the terminal has room for, or all
// for a `wide` table. Writes nothing without faces.
std::unique_ptr<FaceWriter> MakeTableWriter(std::ostream& out, std::vector<const Field*> fields, bool wide);

}  // namespace quillmark::tool

#endif
