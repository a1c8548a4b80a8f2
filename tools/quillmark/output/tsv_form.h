// Faces as tab-separated values: a line of names, then one line a face.
#ifndef QUILLMARK_TOOL_OUTPUT_TSV_FORM_H_
#define QUILLMARK_TOOL_OUTPUT_TSV_FORM_H_

#include <string>
#include <vector>

#include "faces/face.h"
#include "faces/fields.h"

namespace quillmark::tool {

// Bytes as they are, except tab, line feed, carriage return and backslash, which become \t, \n, \r and \\.
std::string TsvText(const std::string& text);

// Line end included.
std::string TsvHeader(const std::vector<const Field*>& fields);
std::string TsvLine(const Face& face, const std::vector<const Field*>& fields);

}  // namespace quillmark::tool

#endif
