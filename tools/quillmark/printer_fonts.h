// Printer font files: their outlines are read through the font family file that names them. Tests:
// tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_PRINTER_FONTS_H_
#define QUILLMARK_TOOL_PRINTER_FONTS_H_

#include <string>

#include "outcome.h"

namespace quillmark::tool {

// Why the printer font at `path` gives no face by itself, and which family file beside it to give instead.
// `what` says what it is, as "a printer font".
Explanation ExplainPrinterFont(const std::string& path, const std::string& what);

}  // namespace quillmark::tool

#endif
