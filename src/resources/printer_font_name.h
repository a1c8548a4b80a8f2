// Names that a FOND composes for its styles, and the file names of printer fonts derived from them.
// Sources: Inside Macintosh: Text, "Style-Mapping Table"; the five-three-three rule of PostScript printer
// fonts. Tests: tests/resources/printer_font_name_test.cc.
#ifndef QUILLMARK_RESOURCES_PRINTER_FONT_NAME_H_
#define QUILLMARK_RESOURCES_PRINTER_FONT_NAME_H_

#include <cstdint>

#include "platform/byte_reader.h"
#include "platform/resource_manager.h"

namespace quillmark {

// Index 0 to 47 into a style mapping table for classic style bits (bold 1, italic 2, outline 8, shadow 16,
// condense 32, extend 64; underline 4 is ignored, condense wins over extend).
int GetStyleIndex(unsigned char style);

// Copies string `n` (from 1; lower numbers read as 1) of Pascal strings that lie behind one another, cut to
// `limit` bytes with the length byte, at least 1. Returns its length; the empty string without one.
std::int32_t GetIndStyleName(Bytes strings, std::int16_t n, unsigned char* out, std::int32_t limit);

// The PostScript name of a style as a Pascal string of printable ASCII; empty when the FOND composes none.
// `limit` counts the length byte; `out` holds `limit` bytes.
void GetPrinterFontNameFromResource(Handle fond, unsigned char style, unsigned char* out, std::int32_t limit);

// The printer font's file name for a PostScript name, both Pascal strings; `out` holds 256 bytes.
// Helvetica-BoldOblique gives HelveBolObl.
void GetPostScriptFontFileName(const unsigned char* psName, unsigned char* out);

}  // namespace quillmark

#endif
