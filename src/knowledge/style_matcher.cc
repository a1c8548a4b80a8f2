// Finds the built-in styles that a list of style components stands for: one style that is exactly the list,
// or else the best weights and the best other styles. Also the plain test for a user's own style word. Tests:
// tests/knowledge/style_scan_test.cc, fuzz/style_name_fuzzer.cc.
#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "knowledge/font_style_scan.h"
#include "knowledge/keyword_table.h"
#include "knowledge/style_scanner.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

struct SBuiltinStyleMatcher {
  const SBuiltinStyle* style;
  std::size_t matchCount;  // components that the style accounts for, after the modifier check
  bool fullyMatched;       // it accounts for each of its constants, and none of them compounds
};

// One value for the weights, one for the other styles.
struct ByKind {
  std::size_t weight;
  std::size_t other;
  std::size_t& ForKindOf(const SBuiltinStyle& style) { return style.isWeight ? weight : other; }
};

// How often each constant occurs among the font's components, so that counting a style's hits costs the
// style's length whatever the name's.
using ConstantCounts = std::unordered_map<std::int32_t, std::size_t>;

// A constant that the style lists twice counts twice.
std::size_t HitsOf(const SBuiltinStyle& style, const ConstantCounts& counts) {
  std::size_t hits = 0;
  for (const std::int32_t constant : style.components) {
    const auto found = counts.find(constant);
    if (found != counts.end()) hits += found->second;
  }
  return hits;
}

// How often the style lists `modifier` without `qualified` right after it, up to the first place where it
// does pair them.
std::size_t UnpairedOccurrences(const SBuiltinStyle& style, std::int32_t modifier, std::int32_t qualified) {
  std::size_t unpaired = 0;
  const std::vector<std::int32_t>& constants = style.components;
  for (std::size_t i = 0; i < constants.size(); ++i) {
    if (constants[i] != modifier) continue;
    if (i + 1 < constants.size() && constants[i + 1] == qualified) break;
    ++unpaired;
  }
  return unpaired;
}

// How many components are removed because the style does not pair a modifier of the font with the component
// that it qualifies. Removal by index, last to first. A position marked n times removes n components from
// there on, or as many as are left. Only the count is used.
std::size_t CountRemovedModifiers(const SBuiltinStyle& style, std::span<const ScannedComponent> components) {
  std::size_t left = components.size();
  for (std::size_t i = components.size() - 1; i-- > 0;) {
    if (!components[i].is_modifier) continue;
    const std::size_t marks = UnpairedOccurrences(style, components[i].constant, components[i + 1].constant);
    left -= std::min(marks, left > i ? left - i : 0);
  }
  return components.size() - left;
}

bool HasCompounding(const SBuiltinStyle& style) {
  return std::any_of(style.components.begin(), style.components.end(),
                     [](std::int32_t constant) { return KeywordTable::Shared().Compounds(constant); });
}

// Keeps the candidates with the best count of their kind, and full matches; then drops those longer than the
// shortest best one. No best one: no length limit.
std::vector<SBuiltinStyle> BestCandidates(std::span<const SBuiltinStyleMatcher> candidates, ByKind best) {
  constexpr std::size_t kAnyLength = std::numeric_limits<std::size_t>::max();
  ByKind shortest{kAnyLength, kAnyLength};
  std::vector<const SBuiltinStyle*> remaining;
  for (const SBuiltinStyleMatcher& candidate : candidates) {
    const SBuiltinStyle& style = *candidate.style;
    const bool reaches_best = candidate.matchCount >= best.ForKindOf(style);
    if (reaches_best)
      shortest.ForKindOf(style) = std::min(shortest.ForKindOf(style), style.components.size());
    if (reaches_best || candidate.fullyMatched) remaining.push_back(&style);
  }
  std::vector<SBuiltinStyle> styles;
  for (const SBuiltinStyle* const style : remaining) {
    if (style->components.size() <= shortest.ForKindOf(*style)) styles.push_back(*style);
  }
  return styles;
}

std::vector<SBuiltinStyle> MatchStyles(std::span<const ScannedComponent> components) {
  if (components.empty()) return {};
  ConstantCounts counts;
  for (const ScannedComponent& component : components) ++counts[component.constant];
  ByKind best{0, 0};
  std::vector<SBuiltinStyleMatcher> candidates;
  for (const SBuiltinStyle& style : KeywordTable::Shared().styles()) {
    const std::size_t hits = HitsOf(style, counts);
    if (hits == 0 || hits < best.ForKindOf(style)) continue;
    const std::size_t removed = CountRemovedModifiers(style, components);
    const std::size_t remaining_hits = hits - removed;
    if (remaining_hits == 0 || removed == components.size()) continue;
    if (removed == 0 && style.components.size() == components.size() && hits == components.size()) {
      return {style};
    }
    candidates.push_back(
        {&style, remaining_hits, remaining_hits == style.components.size() && !HasCompounding(style)});
    // The hits before the check: a pair that the check breaks still keeps weaker styles out.
    best.ForKindOf(style) = std::max(best.ForKindOf(style), hits);
  }
  return BestCandidates(candidates, best);
}

}  // namespace

std::int32_t OmFontStyleScan::ScanFontForBuiltinStyles(const std::string& primary,
                                                       const std::string& secondary,
                                                       std::vector<SBuiltinStyle>& styles) {
  styles = MatchStyles(ScanNames(primary, secondary));
  return static_cast<std::int32_t>(styles.size());
}

std::uint32_t OmFontStyleScan::FindBuiltinMatchesForStyleComponents(
    const std::vector<SStyleComponent>& components, std::vector<SBuiltinStyle>& styles) {
  std::vector<ScannedComponent> scanned;
  scanned.reserve(components.size());
  for (const SStyleComponent& component : components) {
    scanned.push_back({component.styleConstant, component.isModifier, &component});
  }
  styles = MatchStyles(scanned);
  return static_cast<std::uint32_t>(styles.size());
}

bool OmFontStyleScan::ScanFontForUserStyle(std::string first, std::string second, std::string user_style) {
  for (std::string* const text : {&first, &second, &user_style}) {
    *text = OmString(*text).ToLower().str();
  }
  return first.find(user_style) != std::string::npos || second.find(user_style) != std::string::npos;
}

}  // namespace quillmark
