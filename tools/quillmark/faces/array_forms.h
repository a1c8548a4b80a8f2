// Writes the two forms that hosts store, with the faces of many files in one document.
#ifndef QUILLMARK_TOOL_FACES_ARRAY_FORMS_H_
#define QUILLMARK_TOOL_FACES_ARRAY_FORMS_H_

#include <string>

#include "faces/face.h"

namespace quillmark::tool {

// An array without faces, to which others are joined.
FontArray EmptyArray();
// Copies no face to an empty array.
void Join(FontArray& whole, FontArray part);

std::string XmlText(const QM_FontArray& array);
std::string PropertyListText(const QM_FontArray& array);

}  // namespace quillmark::tool

#endif
