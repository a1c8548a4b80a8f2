// ReadXml: reads the XML form, and tells the tool what QM_CreateSpecifierFromXML has no status for. Tests:
// tests/api/stored_forms_test.cc.
#ifndef QUILLMARK_API_XML_READER_H_
#define QUILLMARK_API_XML_READER_H_

#include "api/font_array.h"

namespace quillmark {

struct XmlReading {
  bool any_whole = false;  // at least one block has its end tag
  bool is_cut = false;  // the faces repeat the text's bytes too often: those behind the last one are not read
};

// Appends the faces of the text.
XmlReading ReadXml(const char* text, QM_FontArray& faces);

}  // namespace quillmark

#endif
