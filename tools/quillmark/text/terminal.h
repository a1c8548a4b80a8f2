// Width of the terminal that output goes to, and whether text may be bold.
#ifndef QUILLMARK_TOOL_TEXT_TERMINAL_H_
#define QUILLMARK_TOOL_TEXT_TERMINAL_H_

#include <cstddef>

namespace quillmark::tool {

struct TerminalLook {
  std::size_t columns = 0;  // 0 for no limit
  bool bold = false;        // whether bold text is shown as such, and wanted
};

bool IsTerminal(int descriptor);

// Columns of the terminal, or 0 when the descriptor is none.
std::size_t TerminalColumns(int descriptor);

// The look of standard output. Bold only on a terminal that is not "dumb", and not where NO_COLOR is set.
TerminalLook OutputLook();

}  // namespace quillmark::tool

#endif
