// Names, version and maker's text out of the `name` table of an sfnt font (OpenType name table), with a fixed
// order of preference among its records. Tests: tests/analysis/names_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_TABLE_H_
#define QUILLMARK_ANALYSIS_NAME_TABLE_H_

#include <string>
#include <variant>

#include "analysis/collected_face.h"
#include "analysis/name_record.h"
#include "analysis/sfnt_data.h"
#include "support/om_string.h"

namespace quillmark {

// The names, or why the table gives none: it is not valid, or holds no text.
std::variant<FaceNames, NameFault> getMetaDataFromNamesTable(const SfntData& font);

// The PostScript name alone, with illegal characters replaced; empty when there is none.
std::string getPostScriptNameFromNamesTable(const SfntData& font);

// Blank ( ) / [ ] { } become "-".
void ReplaceIllegalCharsInPostScriptName(OmString& name);

}  // namespace quillmark

#endif
