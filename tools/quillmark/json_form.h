// Faces as JSON for programs: one array of objects. Bytes that are not UTF-8 become U+FFFD.
#ifndef QUILLMARK_TOOL_JSON_FORM_H_
#define QUILLMARK_TOOL_JSON_FORM_H_

#include <ostream>
#include <vector>

#include "face.h"

namespace quillmark::tool {

// Writes the array piece by piece, so that faces need not be held.
class JsonArray {
 public:
  explicit JsonArray(std::ostream& out) : out_(out) {}
  void Add(const Face& face);
  void Finish();

 private:
  std::ostream& out_;
  bool empty_ = true;
};

}  // namespace quillmark::tool

#endif
