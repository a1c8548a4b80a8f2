// The fields of a face by name, for the forms in which the reader chooses and orders them.
#ifndef QUILLMARK_TOOL_FACES_FIELDS_H_
#define QUILLMARK_TOOL_FACES_FIELDS_H_

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "faces/face.h"

namespace quillmark::tool {

enum class FieldUse {
  kUsual,
  kPath,      // the table never cuts it
  kOnRequest  // written only where it is named
};

struct Field {
  const char* name;                              // in JSON, tab-separated text and --fields
  const char* title;                             // in the table
  nlohmann::ordered_json (*value)(const Face&);  // null when the face has none
  FaceNeeds needs = {};
  FieldUse use = FieldUse::kUsual;
};

// All of them, in the order of the JSON form; those on request come last.
const std::vector<Field>& AllFields();

// Null for an unknown name.
const Field* FindField(const std::string& name);

// What a face of these fields must know.
FaceNeeds NeedsOf(const std::vector<const Field*>& fields);

// A field as text: several values are joined by "; ", a missing one is empty.
std::string FieldText(const Field& field, const Face& face);

}  // namespace quillmark::tool

#endif
