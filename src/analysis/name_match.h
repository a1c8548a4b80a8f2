// Loose comparison of PostScript names. Tests: tests/analysis/name_match_test.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_MATCH_H_
#define QUILLMARK_ANALYSIS_NAME_MATCH_H_

#include <string>

namespace quillmark::GFontToolUtils {

// What of a name counts in the loose comparison: its ASCII digits and letters before the second hyphen.
std::string StripCharsAndNormalizeString(const std::string& name);

// Equal bytes; or, unless `exactOnly`, equal when only ASCII digits and letters count and all behind the
// second hyphen is ignored. Case always counts.
bool DoPostScriptNamesMatch(const std::string& a, const std::string& b, bool exactOnly);

}  // namespace quillmark::GFontToolUtils

#endif
