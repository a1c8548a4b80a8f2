#include "knowledge/foundry_pattern_index.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace quillmark {
namespace {

constexpr std::uint32_t kNoRank = std::numeric_limits<std::uint32_t>::max();

// The range of sorted patterns that begin with the text of one state.
struct Span {
  std::size_t first;
  std::size_t last;
  std::size_t shared_length;
};

}  // namespace

FoundryPatternIndex::FoundryPatternIndex(std::vector<Pattern> patterns) {
  std::sort(patterns.begin(), patterns.end(), [](const Pattern& a, const Pattern& b) {
    return std::tie(a.text, a.rank) < std::tie(b.text, b.rank);
  });
  std::vector<Span> spans{{0, patterns.size(), 0}};
  AddState('\0', 0, kNoRank);
  for (State state = 0; state < spans.size(); ++state) {
    first_child_.push_back(static_cast<State>(labels_.size()));
    auto [first, last, length] = spans[state];
    while (first < last && patterns[first].text.size() == length) ++first;  // they end in this state
    while (first < last) {
      const char byte = patterns[first].text[length];
      std::size_t end = first;
      while (end < last && patterns[end].text[length] == byte) ++end;
      const bool ends_here = patterns[first].text.size() == length + 1;
      const State child = AddState(byte, state == 0 ? 0 : Next(fallback_[state], byte),
                                   ends_here ? patterns[first].rank : kNoRank);
      if (state == 0) root_children_[static_cast<unsigned char>(byte)] = child;
      spans.push_back({first, end, length + 1});
      first = end;
    }
  }
  first_child_.push_back(static_cast<State>(labels_.size()));
}

FoundryPatternIndex::State FoundryPatternIndex::AddState(char label, State fallback, std::uint32_t own_rank) {
  const auto state = static_cast<State>(labels_.size());
  labels_.push_back(label);
  fallback_.push_back(fallback);
  ranks_.push_back(state == 0 ? own_rank : std::min(own_rank, ranks_[fallback]));
  return state;
}

FoundryPatternIndex::State FoundryPatternIndex::Child(State state, char byte) const {
  if (state == 0) return root_children_[static_cast<unsigned char>(byte)];
  const State first = first_child_[state];
  const std::string_view labels = std::string_view(labels_).substr(first, first_child_[state + 1] - first);
  const std::size_t at = labels.find(byte);
  return at == std::string_view::npos ? 0 : first + static_cast<State>(at);
}

FoundryPatternIndex::State FoundryPatternIndex::Next(State state, char byte) const {
  State child = Child(state, byte);
  while (child == 0 && state != 0) {
    state = fallback_[state];
    child = Child(state, byte);
  }
  return child;
}

std::optional<std::uint32_t> FoundryPatternIndex::SmallestRankIn(std::string_view text) const {
  std::uint32_t smallest = kNoRank;
  State state = 0;
  for (const char byte : text) {
    state = Next(state, byte);
    smallest = std::min(smallest, ranks_[state]);
  }
  if (smallest == kNoRank) return std::nullopt;
  return smallest;
}

}  // namespace quillmark
