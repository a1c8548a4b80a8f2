// Faces from the JSON that identify writes (json_form.h), so that it can be kept and turned into another
// form. Tests: tests/cli/standard_input_test.py.
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
  FontArray array;         // the same faces
  std::string fault;       // why the text cannot be read; then the rest means nothing
  std::string not_read{};  // what of the text is not in the faces; empty when all is
  bool is_cut = false;     // the text repeats its bytes too often: only its first faces
};

// Every field of a face is taken as it stands, and what a face lacks is as the stored forms leave it. Other
// members of an object are passed over. A face without a path gets `path`, and its place there.
FacesOrFault ReadJsonFaces(const std::string& text, const std::string& path);

}  // namespace quillmark::tool

#endif
