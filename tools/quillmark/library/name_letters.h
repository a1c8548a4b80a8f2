// Whether a name can identify a font: names such as "-" or "..." occur in many unrelated fonts.
#ifndef QUILLMARK_TOOL_LIBRARY_NAME_LETTERS_H_
#define QUILLMARK_TOOL_LIBRARY_NAME_LETTERS_H_

#include <string>

namespace quillmark::tool {

// A letter or digit of any script. A character that the C library does not know may be one.
bool HoldsLetterOrDigit(const std::string& name);

}  // namespace quillmark::tool

#endif
