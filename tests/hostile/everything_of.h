// All that the exported functions give of an array, as one text to compare.
#ifndef QUILLMARK_TESTS_HOSTILE_EVERYTHING_OF_H_
#define QUILLMARK_TESTS_HOSTILE_EVERYTHING_OF_H_

#include <string>

#include "quillmark/quillmark.h"

namespace quillmark {

// "none" for null.
std::string EverythingOf(const QM_FontArray* array);

}  // namespace quillmark

#endif
