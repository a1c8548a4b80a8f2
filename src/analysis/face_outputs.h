// Where the readers of one face put what they find. A null pointer means that the value is not wanted.
#ifndef QUILLMARK_ANALYSIS_FACE_OUTPUTS_H_
#define QUILLMARK_ANALYSIS_FACE_OUTPUTS_H_

#include <cstdint>

#include "support/om_string.h"

namespace quillmark {

struct NameOutputs {
  OmString* foundry = nullptr;  // the maker's text as the font has it: manufacturer, notice or copyright
  OmString* family_name = nullptr;
  OmString* version = nullptr;
  OmString* post_script_name = nullptr;
  OmString* display_name = nullptr;
  OmString* full_name = nullptr;
  OmString* windows_full_name = nullptr;
};

struct FaceOutputs {
  OmString* printer_font_path = nullptr;  // in and out; of PostScript faces only
  OmString* kind_name = nullptr;
  OmString* platform = nullptr;  // "mac" or "crossplatform"
  NameOutputs names;
  std::uint32_t* kerning_checksum = nullptr;
};

}  // namespace quillmark

#endif
