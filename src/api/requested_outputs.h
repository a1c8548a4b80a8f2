// Points the readers of a face at those fields of its specifier that a request asks for.
// Tests: tests/api/creation_test.cc.
#ifndef QUILLMARK_API_REQUESTED_OUTPUTS_H_
#define QUILLMARK_API_REQUESTED_OUTPUTS_H_

#include <cstdint>

#include "analysis/face_outputs.h"
#include "api/font_specifier.h"

namespace quillmark {

// The pointers live as long as `specifier`.
NameOutputs RequestedNames(std::uint32_t request, QM_FontSpecifier& specifier);

}  // namespace quillmark

#endif
