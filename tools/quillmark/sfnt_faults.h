// What is wrong with an sfnt font that gives no face. Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_SFNT_FAULTS_H_
#define QUILLMARK_TOOL_SFNT_FAULTS_H_

#include <optional>
#include <string>
#include <string_view>

#include "analysis/sfnt_data.h"

namespace quillmark::tool {

// "a TrueType font" and the like when the bytes begin as an sfnt font does.
std::optional<std::string_view> SfntKind(Bytes start);

// Why no name can be read from the font, by the library's own steps; nothing when one can, which is all that
// a face needs. `whole` is what the font lies in, as "the file".
std::optional<std::string> NameFault(const SfntData& font, const std::string& whole);

}  // namespace quillmark::tool

#endif
