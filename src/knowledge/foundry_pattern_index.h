// Tells which of many patterns occur in a text in one pass over it (the automaton of Aho and Corasick), so
// that a foundry query over a long font header costs the header's length, however many patterns the table
// has. Tests: tests/knowledge/lookup_tables_test.cc.
#ifndef QUILLMARK_KNOWLEDGE_FOUNDRY_PATTERN_INDEX_H_
#define QUILLMARK_KNOWLEDGE_FOUNDRY_PATTERN_INDEX_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

class FoundryPatternIndex {
 public:
  struct Pattern {
    std::string text;    // not empty
    std::uint32_t rank;  // the smaller wins
  };

  explicit FoundryPatternIndex(std::vector<Pattern> patterns = {});

  // The smallest rank of the patterns that occur in `text`, byte for byte.
  std::optional<std::uint32_t> SmallestRankIn(std::string_view text) const;

 private:
  // Each state is a prefix of some pattern, the root (0) the empty one. States are laid out breadth first, so
  // the children of a state lie side by side, those of `s` in [first_child_[s], first_child_[s + 1]).
  using State = std::uint32_t;

  State AddState(char label, State fallback, std::uint32_t own_rank);
  State Child(State state, char byte) const;  // the root when there is none
  State Next(State state, char byte) const;

  std::string labels_;  // the byte that leads to each state
  std::vector<State> first_child_;
  std::vector<State> fallback_;       // the longest proper ending that is a state too
  std::vector<std::uint32_t> ranks_;  // the smallest rank of the patterns that end here, fallbacks' included
  std::array<State, 256> root_children_{};
};

}  // namespace quillmark

#endif
