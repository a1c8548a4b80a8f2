// Printer font files: their outlines are read through the font family file that names them. Tests:
// tests/cli/why_test.py, tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_REASONS_PRINTER_FONTS_H_
#define QUILLMARK_TOOL_REASONS_PRINTER_FONTS_H_

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "reasons/opened_font.h"
#include "reasons/outcome.h"

namespace quillmark::tool {

// Caches by folder which family files name which printer fonts. A folder can hold thousands of printer fonts,
// so it is searched once for all of them. For one file system, and any number of threads.
class PrinterFontFamilies {
 public:
  struct Families {
    std::map<std::string, std::string> files;  // by the name of a printer font
    std::string unread;     // which file of the folder cannot be read, and why; empty when all can
    bool may_pass = false;  // what keeps it from being read
  };

  // The families of one folder.
  std::shared_ptr<const Families> InFolder(const FileSystem& files, const std::string& folder);

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const Families>> cache_;  // by folder; cleared at kCacheLimit
};

// Why the printer font `font` gives no face by itself, and which family file beside it to give instead.
// `what` says what it is, as "a printer font".
Explanation ExplainPrinterFont(const OpenedFont& font, const std::string& what,
                               PrinterFontFamilies& families);

}  // namespace quillmark::tool

#endif
