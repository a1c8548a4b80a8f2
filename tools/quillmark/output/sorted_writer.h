// Writes faces in the order of one of their fields. Tests: tests/cli/forms_test.py.
#ifndef QUILLMARK_TOOL_OUTPUT_SORTED_WRITER_H_
#define QUILLMARK_TOOL_OUTPUT_SORTED_WRITER_H_

#include <memory>

#include "faces/fields.h"
#include "output/face_writer.h"

namespace quillmark::tool {

// Holds all faces to the end, then hands them to `writer`. Numbers are ordered as numbers, versions by their
// numbers, all else by its bytes; faces without the field come last. Faces of equal fields keep their order.
std::unique_ptr<FaceWriter> Sorted(std::unique_ptr<FaceWriter> writer, const Field& field);

}  // namespace quillmark::tool

#endif
