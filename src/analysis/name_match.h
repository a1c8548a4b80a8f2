// Loose comparison of PostScript names. Tests: tests/analysis/names_test.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_MATCH_H_
#define QUILLMARK_ANALYSIS_NAME_MATCH_H_

#include <string>

namespace quillmark::GFontToolUtils {

// The part of a name that the loose comparison looks at: its ASCII digits and letters before the second
// hyphen.
std::string StripCharsAndNormalizeString(const std::string& name);

// Whether the names are equal; unless `exactOnly`, whether their stripped forms (see above) are. Case always
// counts.
bool DoPostScriptNamesMatch(const std::string& a, const std::string& b, bool exactOnly);

}  // namespace quillmark::GFontToolUtils

#endif
