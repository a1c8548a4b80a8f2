// The names in a printer font file, whose program lies in POST resources or in the data fork. Tests:
// tests/analysis/postscript_metadata_test.cc, tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_PRINTER_FONT_H_
#define QUILLMARK_ANALYSIS_PRINTER_FONT_H_

#include <memory>
#include <string>

#include "analysis/face_collector.h"
#include "analysis/face_outputs.h"

namespace quillmark {

// Gathers from the header in the first two POST resources, where names are. kPrinterFontMissing: neither fork
// holds a resource map; kUndecided: there is no first segment.
[[nodiscard]] CollectStatus GatherFromPrinterFont(const std::string& path, const FaceOutputs& outputs);
// Gathers from the first bytes of the data fork. kPrinterFontMissing: there is no such file.
[[nodiscard]] CollectStatus GatherFromDataFork(const std::string& path, const FaceOutputs& outputs);

struct PrinterFontMemory;

// While one of these lives on a thread, a printer font file is parsed once for all faces that ask the same of
// it. They may nest; the outermost one forgets.
class PrinterFontScope {
 public:
  PrinterFontScope();
  ~PrinterFontScope();
  PrinterFontScope(const PrinterFontScope&) = delete;
  PrinterFontScope& operator=(const PrinterFontScope&) = delete;

 private:
  std::unique_ptr<PrinterFontMemory> memory_;  // of the outermost one
};

}  // namespace quillmark

#endif
