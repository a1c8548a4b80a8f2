// Cuts names into style words, recognises the words, and corrects the list for conventions that the keyword
// table cannot express. Letters are the ASCII letters; every other byte only separates. Tests:
// tests/knowledge/style_scan_test.cc, fuzz/style_name_fuzzer.cc.
#include "knowledge/style_scanner.h"

#include <array>
#include <cstddef>
#include <optional>

#include "knowledge/keyword_table.h"
#include "platform/text/ascii_case.h"

namespace quillmark {
namespace {

constexpr std::size_t kNoPosition = std::string_view::npos;

// Constants that the corrections below know. The numbers are the keyword table's, which keeps these meanings.
constexpr std::int32_t kItalic = 0;
constexpr std::int32_t kBold = 1;
constexpr std::int32_t kDemi = 4;
constexpr std::int32_t kExtra = 5;
constexpr std::int32_t kLight = 9;
constexpr std::int32_t kRoman = 12;
constexpr std::int32_t kRegular = 13;
constexpr std::int32_t kSemi = 15;
constexpr std::int32_t kUltra = 16;
constexpr std::int32_t kThin = 35;

bool IsLetter(char c) { return IsUpperAscii(c) || IsLowerAscii(c); }

bool Contains(std::string_view text, std::string_view part, std::size_t from = 0) {
  return text.find(part, from) != kNoPosition;
}

// The words of one name, as slices of it. The first byte never starts one, so that the capitalised family
// name that leads a name is not taken for a style.
class WordCutter {
 public:
  WordCutter(std::string_view name, bool multiple_master)
      : name_(name), suffix_(multiple_master ? name.find('_') : kNoPosition) {}

  // The next word, empty where two separators meet; nothing when the name is used up.
  std::optional<std::string_view> Next() {
    if (position_ == kNoPosition) return std::nullopt;
    return position_ >= suffix_ ? NextOfSuffix() : NextCapitalised();
  }

 private:
  // An instance suffix, _215 LT 300 CN, is cut into its runs of capitals; a lower-case letter may lead one.
  std::string_view NextOfSuffix() {
    const std::size_t first = FindFrom(position_, IsLetter);
    if (first == kNoPosition) return MoveTo(kNoPosition, {});
    const std::size_t end = FindFrom(first + 1, [](char c) { return !IsUpperAscii(c); });
    return MoveTo(end, Slice(first, end));
  }

  // A capital and the lower-case letters after it. Lower-case letters before it are passed over, and so is
  // everything up to the next capital after it.
  std::string_view NextCapitalised() {
    const std::size_t first = FindFrom(position_, [](char c) { return !IsLowerAscii(c); });
    if (first == kNoPosition) return MoveTo(kNoPosition, {});
    if (!IsUpperAscii(name_[first])) return MoveTo(FindFrom(first + 1, IsUpperAscii), {});
    const std::size_t end = FindFrom(first + 1, [](char c) { return !IsLowerAscii(c); });
    return MoveTo(end == kNoPosition ? kNoPosition : FindFrom(end, IsUpperAscii), Slice(first, end));
  }

  template <typename Test>
  std::size_t FindFrom(std::size_t from, Test test) const {
    for (std::size_t i = from; i < name_.size(); ++i) {
      if (test(name_[i])) return i;
    }
    return kNoPosition;
  }

  std::string_view Slice(std::size_t first, std::size_t end) const {
    return name_.substr(first, end == kNoPosition ? kNoPosition : end - first);
  }

  std::string_view MoveTo(std::size_t position, std::string_view word) {
    position_ = position;
    return word;
  }

  std::string_view name_;
  std::size_t suffix_;  // where the rule for instance suffixes begins
  std::size_t position_ = 1;
};

using ComponentList = std::vector<ScannedComponent>;

ScannedComponent OfTable(const SStyleComponent& entry) {
  return {entry.styleConstant, entry.isModifier, &entry};
}
ScannedComponent Added(std::int32_t constant, bool is_modifier) { return {constant, is_modifier, nullptr}; }

bool AppendWord(std::string_view word, ComponentList& list) {
  const SStyleComponent* const entry = KeywordTable::Shared().FindWord(word);
  if (entry) list.push_back(OfTable(*entry));
  return entry != nullptr;
}

void AppendName(std::string_view name, bool is_primary, bool multiple_master, ComponentList& list) {
  WordCutter cutter(name, multiple_master);
  while (const auto word = cutter.Next()) {
    if (word->empty() || AppendWord(*word, list) || !is_primary || *word != "Xlight") continue;
    list.push_back(Added(kExtra, true));
    list.push_back(Added(kLight, false));
  }
}

// Multiple Master instance suffixes, each looked for on its own.
struct SuffixMarker {
  std::string_view marker;
  std::array<std::string_view, 2> words;
};
constexpr SuffixMarker kSuffixMarkers[] = {
    {"_XC", {"Extra", "Cond"}},  {"_XL", {"Extra", "Lt"}},  {"_XB", {"Extra", "Black"}},
    {"_UB", {"Ultra", "Black"}}, {"_SB", {"Semi", "Bold"}},
};

void AppendSuffixMarkers(std::string_view primary, ComponentList& list) {
  for (const SuffixMarker& row : kSuffixMarkers) {
    if (!Contains(primary, row.marker)) continue;
    for (const std::string_view word : row.words) AppendWord(word, list);
  }
}

// The longer of the lists that the two names give; the primary name's when they are of one length.
ComponentList RecognisedComponents(std::string_view primary, std::string_view secondary) {
  const bool multiple_master = Contains(primary, "MM");
  const bool old_style_figures = Contains(primary, "OsF");
  ComponentList first;
  ComponentList second;
  AppendName(primary, true, multiple_master, first);
  if (multiple_master) AppendSuffixMarkers(primary, first);
  if (old_style_figures) AppendWord("OsF", first);
  if (!multiple_master && Contains(primary, "SC", 1)) {
    AppendWord("Small", first);
    AppendWord("Caps", first);
  }
  if (!multiple_master && Contains(primary, "CY", 1)) AppendWord("Cyrillic", first);
  if (!old_style_figures) {  // with old-style figures the secondary name is ignored
    AppendName(secondary, false, multiple_master, second);
    if (multiple_master) AppendSuffixMarkers(primary, second);
  }
  if (second.size() > first.size()) return second;
  return first;
}

void RemoveAt(ComponentList& list, std::optional<std::size_t> index) {
  if (index && *index < list.size()) list.erase(list.begin() + static_cast<std::ptrdiff_t>(*index));
}

void Correct(ComponentList& list, std::string_view primary, std::string_view secondary) {
  const bool semibold = Contains(primary, "Semibold") || Contains(secondary, "Semibold");
  const SStyleComponent* const light =
      Contains(primary, "HelveticaNeue") ? KeywordTable::Shared().FindWord("Light") : nullptr;

  bool italic = false;
  // Where each of the others was seen last.
  std::optional<std::size_t> bold;
  std::optional<std::size_t> roman;
  std::optional<std::size_t> regular;
  std::optional<std::size_t> demi_or_semi;
  bool keeps_demi_or_semi = false;  // then a bold is redundant; never cleared
  for (std::size_t i = 0; i < list.size(); ++i) {
    switch (const std::int32_t constant = list[i].constant) {
      case kItalic:
        italic = true;
        break;
      case kBold:
        bold = i;
        break;
      case kRoman:
        roman = i;
        break;
      case kRegular:
        regular = i;
        break;
      case kDemi:
      case kSemi:
        demi_or_semi = i;
        if (constant == kDemi || semibold) keeps_demi_or_semi = true;
        if (i + 1 < list.size() && list[i + 1].constant == kBold) keeps_demi_or_semi = true;
        break;
      case kThin:
        if (light) list[i] = OfTable(*light);
        break;
      default:
        break;
    }
  }

  // Each index is the one seen above, also where an earlier removal has moved the component: styles that
  // hosts store depend on which word is removed.
  if (italic || bold) {
    RemoveAt(list, regular);
    RemoveAt(list, roman);
  }
  if (keeps_demi_or_semi) {
    RemoveAt(list, bold);
  } else {
    RemoveAt(list, demi_or_semi);
  }
  if (!list.empty() && list.back().constant == kUltra) list.push_back(Added(kBold, false));
}

}  // namespace

std::vector<ScannedComponent> ScanNames(std::string_view primary, std::string_view secondary) {
  ComponentList list = RecognisedComponents(primary, secondary);
  Correct(list, primary, secondary);
  return list;
}

bool OmFontStyleScan::MatchStyleComponent(const std::string& word, SStyleComponent& component) {
  const SStyleComponent* const entry = KeywordTable::Shared().FindWord(word);
  if (entry) component = *entry;
  return entry != nullptr;
}

std::vector<SStyleComponent> OmFontStyleScan::ScanFontForStyleComponents(const std::string& primary,
                                                                         const std::string& secondary) {
  std::vector<SStyleComponent> components;
  for (const ScannedComponent& scanned : ScanNames(primary, secondary)) {
    if (scanned.entry) {
      components.push_back(*scanned.entry);
    } else {
      components.push_back({scanned.constant, scanned.is_modifier, false, {}, {}});
    }
  }
  return components;
}

}  // namespace quillmark
