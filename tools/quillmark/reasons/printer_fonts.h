// Printer font files: their outlines are read through the font family file that names them. Tests:
// tests/cli/why_test.py, tests/cli/jobs_test.py.
#ifndef QUILLMARK_TOOL_REASONS_PRINTER_FONTS_H_
#define QUILLMARK_TOOL_REASONS_PRINTER_FONTS_H_

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "reasons/outcome.h"

namespace quillmark::tool {

// Which family files name which printer fonts, folder by folder. A folder can hold thousands of printer
// fonts, so it is searched once for all of them. Any thread may ask.
class PrinterFontFamilies {
 public:
  using Families = std::map<std::string, std::string>;  // from the name of a printer font to a family file

  // Of one folder; as long as it is held.
  std::shared_ptr<const Families> In(const std::string& folder);

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const Families>> known_;  // of a bounded number of folders
};

// Why the printer font at `path` gives no face by itself, and which family file beside it to give instead.
// `what` says what it is, as "a printer font".
Explanation ExplainPrinterFont(const std::string& path, const std::string& what,
                               PrinterFontFamilies& families);

}  // namespace quillmark::tool

#endif
