// Suggests the name that a mistyped word was probably meant to be.
#ifndef QUILLMARK_TOOL_COMMANDS_SUGGESTION_H_
#define QUILLMARK_TOOL_COMMANDS_SUGGESTION_H_

#include <string>
#include <vector>

namespace CLI {
class Validator;
}

namespace quillmark::tool {

// "; did you mean NAME?" with the name that is nearest to `word`, or nothing when none is near. Dashes in
// front do not count, nor does the case of letters.
std::string Suggestion(const std::string& word, const std::vector<std::string>& names);

// Takes one of `names`; refuses any other value, which it calls no `thing`, with all names and the nearest.
CLI::Validator OneOf(const std::string& thing, const std::vector<std::string>& names);

}  // namespace quillmark::tool

#endif
