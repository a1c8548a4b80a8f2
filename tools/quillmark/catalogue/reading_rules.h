// The rules by which files are read. When the library or the tool gives another answer for an unchanged file,
// a version is added here, and the next update reads the files again that it can affect.
#ifndef QUILLMARK_TOOL_CATALOGUE_READING_RULES_H_
#define QUILLMARK_TOOL_CATALOGUE_READING_RULES_H_

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "reasons/outcome.h"

namespace quillmark::tool {

struct RulesVersion {
  std::int64_t number;
  bool (*affects)(Outcome outcome);  // whether a file of which that became may give another answer
};

inline constexpr RulesVersion kRulesVersions[] = {
    {1, [](Outcome) { return true; }},
};
inline constexpr std::int64_t kReadingRules = std::end(kRulesVersions)[-1].number;

// Whether a file must be read again that was read by `rules`; those of a later program are not known.
inline bool MustReadAgain(std::int64_t rules, Outcome outcome) {
  if (rules > kReadingRules) return true;
  return std::any_of(std::begin(kRulesVersions), std::end(kRulesVersions), [&](const RulesVersion& version) {
    return version.number > rules && version.affects(outcome);
  });
}

}  // namespace quillmark::tool

#endif
