// The forms in which faces are written, chosen by name, behind one interface for every command that lists
// faces.
#ifndef QUILLMARK_TOOL_OUTPUT_H_
#define QUILLMARK_TOOL_OUTPUT_H_

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "face.h"

namespace quillmark::tool {

// What --format takes.
extern const std::vector<std::string> kFormats;

class FaceWriter {
 public:
  virtual ~FaceWriter() = default;
  virtual void Add(const std::vector<Face>& faces, const QM_FontArray& array) = 0;
  virtual void Finish() = 0;
};

// `format` is one of kFormats.
std::unique_ptr<FaceWriter> MakeWriter(const std::string& format, std::ostream& out);

}  // namespace quillmark::tool

#endif
