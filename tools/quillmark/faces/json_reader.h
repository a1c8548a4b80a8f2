// Reads faces from the JSON that identify writes (json_form.h), so that it can be stored and converted into
// another form. Tests: tests/cli/input_test.py.
#ifndef QUILLMARK_TOOL_FACES_JSON_READER_H_
#define QUILLMARK_TOOL_FACES_JSON_READER_H_

#include <string>
#include <vector>

#include "faces/face.h"

namespace quillmark::tool {

// Whether a text is to be read as JSON: an array, or objects one after another.
bool BeginsAsJson(const std::string& text);

struct FacesOrFault {
  std::vector<Face> faces;
  FontArray array;         // the same faces, where they are wanted so
  std::string fault;       // why the text cannot be read; the other fields are then meaningless
  std::string not_read{};  // which parts of the text are not in the faces; empty when none
  bool is_cut = false;     // more faces than its bytes can hold: only the first ones
};

// Fields of a face are taken unchanged, and missing ones are treated as in the stored forms. Other members of
// an object are passed over. A face without a path gets `path`, and its place there. The array is made only
// where it is wanted, as it takes as much memory as the faces.
FacesOrFault ReadJsonFaces(const std::string& text, const std::string& path, bool wants_array);

}  // namespace quillmark::tool

#endif
