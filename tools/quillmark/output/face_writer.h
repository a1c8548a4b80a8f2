// FaceWriter: the one interface of the forms in which faces are written, for every command that lists faces.
#ifndef QUILLMARK_TOOL_OUTPUT_FACE_WRITER_H_
#define QUILLMARK_TOOL_OUTPUT_FACE_WRITER_H_

#include <vector>

#include "faces/face.h"

namespace quillmark::tool {

// Writes faces as they come (json, jsonl, tsv) or holds them to the end (table, xml, plist).
class FaceWriter {
 public:
  virtual ~FaceWriter() = default;
  // The faces of one file, as Face objects and as an array. A writer keeps the one it writes from and frees
  // the other.
  virtual void Add(std::vector<Face> faces, FontArray array) = 0;
  virtual void Finish() = 0;
  virtual bool WritesAtOnce() const { return false; }
  // Whether the form is written from arrays; `faces` may then be empty, else `array` null.
  virtual bool WritesArray() const { return false; }
};

}  // namespace quillmark::tool

#endif
