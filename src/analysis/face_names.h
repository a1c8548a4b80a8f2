// FaceNames: the names of one face, as read from its font data. The request decides which of them the face
// keeps (Creation::AddFace).
#ifndef QUILLMARK_ANALYSIS_FACE_NAMES_H_
#define QUILLMARK_ANALYSIS_FACE_NAMES_H_

#include "support/om_string.h"

namespace quillmark {

struct FaceNames {
  OmString foundry;  // the maker's text as the font has it: manufacturer, notice or copyright
  OmString family;
  OmString version;
  OmString post_script_name;
  OmString display_name;
  OmString full_name;
  OmString windows_full_name;
};

}  // namespace quillmark

#endif
