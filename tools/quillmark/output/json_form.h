// Writes results as JSON for programs, each face as one object. Bytes that are not UTF-8 become U+FFFD.
#ifndef QUILLMARK_TOOL_OUTPUT_JSON_FORM_H_
#define QUILLMARK_TOOL_OUTPUT_JSON_FORM_H_

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "faces/face.h"
#include "faces/fields.h"

namespace quillmark::tool {

// On one line, without a line end. Every field that the face has; or, where some are named, those in their
// order, null where the face has none.
std::string JsonObject(const Face& face, const std::vector<const Field*>& named);

// A value on one line, without a line end.
std::string JsonText(const nlohmann::ordered_json& value);

// A whole document for people and programs: indented, with a line end.
void WriteJsonDocument(std::ostream& out, const nlohmann::ordered_json& document);

// Writes one array piece by piece, so that faces need not be held. `indent` stands before its closing
// bracket, `after` behind it.
class JsonArray {
 public:
  explicit JsonArray(std::ostream& out, std::string indent = "") : out_(out), indent_(std::move(indent)) {}
  std::string Between() const { return ",\n" + indent_ + "  "; }
  // One object, or several with Between() between them.
  void Add(const std::string& objects);
  void Finish(const char* after = "\n");

 private:
  std::ostream& out_;
  const std::string indent_;
  bool empty_ = true;
};

}  // namespace quillmark::tool

#endif
