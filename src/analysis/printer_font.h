// PrinterFont: a printer font file, which holds the outlines of PostScript faces in POST resources or in its
// data fork. PrinterFonts caches those of one request, so that each is read once for all faces that name it.
// Tests: tests/analysis/postscript_test.cc, tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_PRINTER_FONT_H_
#define QUILLMARK_ANALYSIS_PRINTER_FONT_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/postscript_header.h"
#include "platform/crc32.h"
#include "platform/files/font_file.h"

namespace quillmark {

struct PrinterFont {
  bool is_file = false;      // there is a regular file
  std::uint64_t length = 0;  // bytes of both forks
  FinderInfo codes;
  std::vector<PostScriptHeader> segments;  // headers of the first two POST resources
  // The header in the first bytes of the data fork, read only when there are no segments. Outer nothing: the
  // data fork cannot be opened; inner nothing: it is empty.
  std::optional<std::optional<PostScriptHeader>> data_fork;
  bool has_map = false;                         // a fork is a resource file
  std::optional<SummedBytes> segment_sums;      // of all POST resources; set with a map, where asked for
  std::optional<std::uint32_t> whole_checksum;  // of both forks; set without a map, where it is asked for
};

PrinterFont ReadPrinterFont(FontFile& file, std::uint32_t request);

// Caches the printer fonts of one request by their paths.
class PrinterFonts {
 public:
  // `access` outlives the object. `request`: QM_Attribute bits.
  PrinterFonts(FileAccess& access, std::uint32_t request) : access_(access), request_(request) {}
  const PrinterFont& At(const std::string& path);

 private:
  FileAccess& access_;
  const std::uint32_t request_;
  std::map<std::string, PrinterFont> cache_;
};

}  // namespace quillmark

#endif
