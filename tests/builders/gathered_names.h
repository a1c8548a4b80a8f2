// What a reader of one PostScript face gathers, all of it asked for.
#ifndef QUILLMARK_TESTS_BUILDERS_GATHERED_NAMES_H_
#define QUILLMARK_TESTS_BUILDERS_GATHERED_NAMES_H_

#include "analysis/face_outputs.h"
#include "support/om_string.h"

namespace quillmark {

struct GatheredNames {
  OmString printer_font_path, kind, foundry, family, version, post_script, display, full;

  FaceOutputs Outputs() {
    FaceOutputs outputs;
    outputs.printer_font_path = &printer_font_path;
    outputs.kind_name = &kind;
    outputs.names.foundry = &foundry;
    outputs.names.family_name = &family;
    outputs.names.version = &version;
    outputs.names.post_script_name = &post_script;
    outputs.names.display_name = &display;
    outputs.names.full_name = &full;
    return outputs;
  }
};

}  // namespace quillmark

#endif
