// Names that a FOND composes for its styles, and the file names of printer fonts derived from them.
// Sources: Inside Macintosh: Text, "Style-Mapping Table"; the five-three-three rule of PostScript printer
// fonts. Tests: tests/resources/printer_font_test.cc.
#ifndef QUILLMARK_RESOURCES_PRINTER_FONT_NAME_H_
#define QUILLMARK_RESOURCES_PRINTER_FONT_NAME_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/budget.h"
#include "platform/byte_reader.h"

namespace quillmark {

// Index 0 to 47 into a style mapping table for classic style bits (bold 1, italic 2, outline 8, shadow 16,
// condense 32, extend 64; underline 4 is ignored, condense wins over extend).
int GetStyleIndex(unsigned char style);

// Copies string `n` (from 1; lower numbers read as 1) of Pascal strings that lie one after another, cut to
// `limit` bytes with the length byte, at least 1. Returns its length; the empty string without one.
std::int32_t GetIndStyleName(Bytes strings, std::int16_t n, unsigned char* out, std::int32_t limit);

// A composed name, and whether it names its file by the rule of double-byte families.
struct PrinterFontName {
  std::string post_script_name;
  bool ends_at_second_hyphen;
  // NOLINTNEXTLINE(modernize-use-nullptr): the comparison that the compiler writes has a plain 0
  auto operator<=>(const PrinterFontName&) const = default;
};

// The style mapping table of a FOND, from which the PostScript names of its styles are composed.
class StyleMapping {
 public:
  // Reads the FOND where it lies, which must outlive the object.
  explicit StyleMapping(Bytes fond, Budget* budget = nullptr);

  // The PostScript name of a style, of printable ASCII and at most limit - 1 characters, 255 at the most;
  // empty when the FOND composes none.
  std::string GetPrinterFontName(unsigned char style, std::int32_t limit = 257) const;

 private:
  // String `n`, from 1, with its length byte; 0 reads as 1.
  std::optional<Bytes> String(std::uint8_t n) const;

  Bytes table_;                 // empty when the FOND holds none
  std::vector<Bytes> strings_;  // at most 255, as a suffix list numbers them in one byte
  Budget* budget_;
};

// The printer font's file name for a PostScript name, both Pascal strings; `out` holds 256 bytes.
// Helvetica-BoldOblique gives HelveBolObl.
void GetPostScriptFontFileName(const unsigned char* psName, unsigned char* out);

}  // namespace quillmark

#endif
