// The decision what kind of font a file holds: by its resources, its extension, and last its first bytes.
// Tests: tests/analysis/font_data_test.cc.
#ifndef QUILLMARK_ANALYSIS_FONT_KIND_H_
#define QUILLMARK_ANALYSIS_FONT_KIND_H_

#include <cstdint>

#include "analysis/font_data.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

// What hosts see of a kind; empty for an unknown one.
const char* KindName(FontKind kind);

// Decides `fontKind`; `kindName` (may be null) receives its name, and is left alone for an unknown kind.
void getMetaData_FontType(TFontData& font, Handle fond, std::int16_t style, OmString* kindName);

// Tests on the first bytes of the data fork, as a 32-bit number in the host's order: on a little-endian
// machine only OTTO, which reads the same both ways, can match a real font. Stored results rely on it.
bool has_ttc_ttcf_Flag(const TFontData& font);
bool has_otf_TrueType_Flag(const TFontData& font);
bool has_otf_OTTO_Flag(const TFontData& font);
// A Windows PFM file by its size field and copyright text, or a resource file whose first `sfnt` is "typ1".
bool hasValidPSHeader(const TFontData& font);

}  // namespace quillmark

#endif
