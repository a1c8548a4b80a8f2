// Which faces of a file are variable fonts: those with a table of variation axes. Tests:
// tests/cli/same_test.py.
#ifndef QUILLMARK_TOOL_FACES_VARIABLE_FACES_H_
#define QUILLMARK_TOOL_FACES_VARIABLE_FACES_H_

#include <cstdint>
#include <vector>

#include "platform/files/font_file.h"

namespace quillmark::tool {

// Tells the outlines of a face from the others in its file. The numbers are those of QM_FontSpecifier.
struct OutlinesKey {
  std::int32_t fond_id = -1, style = 0;
  std::uint32_t checksum = 0;
};

// For each face of a file. A face that cannot be read, or that is not reached
// before the file's budget is spent, counts as not variable.
std::vector<bool> AreVariable(FontFile& file, const std::vector<OutlinesKey>& faces);

}  // namespace quillmark::tool

#endif
