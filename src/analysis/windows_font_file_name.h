// Windows' file names for the parts of a PostScript font. Tests: tests/analysis/names_test.cc.
#ifndef QUILLMARK_ANALYSIS_WINDOWS_FONT_FILE_NAME_H_
#define QUILLMARK_ANALYSIS_WINDOWS_FONT_FILE_NAME_H_

#include "support/om_string.h"

namespace quillmark {

// NAME.pfb gives NAME.mmm: the metrics file of a Multiple Master font. False, leaving `result` alone, for any
// other extension and for names of fewer than 6 characters. The case of the extension does not count.
bool GetWindowsMMMFontNameFromPrinterFontName(const OmString& name, OmString* result);
// NAME.pfm and NAME.mmm give NAME.pfb, under the same conditions.
bool GetWindowsPSPrinterFontNameFromFontName(const OmString& name, OmString* result);

}  // namespace quillmark

#endif
