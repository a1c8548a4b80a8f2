// OmFontStyleScan: the style of a font read out of its names, by the words of KeywordTable.plist.
// Names are cut into words, words become style components (style_scanner.cc), components become the table's
// built-in styles (style_matcher.cc). Matching is by byte and case throughout. The table loads once, behind a
// lock, and lives as long as the process; call Initialize before any scan. Tests:
// tests/knowledge/style_scan_test.cc.
#ifndef QUILLMARK_KNOWLEDGE_FONT_STYLE_SCAN_H_
#define QUILLMARK_KNOWLEDGE_FONT_STYLE_SCAN_H_

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark {

// One recognisable style word with its spellings.
struct SStyleComponent {
  std::int32_t styleConstant = 0;  // the component's identity
  bool isModifier = false;         // qualifies the component that follows it
  bool compounds = false;          // combines with others
  std::string display;
  std::vector<std::string> matchStrings;
};

// One named style, made of components.
struct SBuiltinStyle {
  std::string display;
  std::vector<std::int32_t> components;
  bool isWeight = false;  // weights are matched and ranked apart from the other styles
};

// The keyword table lacks one of its arrays.
class DataRetrieveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class OmFontStyleScan {
 public:
  OmFontStyleScan() = delete;

  // Loads the table once. Throws DataRetrieveError for a malformed table, and tries again on the next call
  // then.
  static void Initialize();
  // Loads the table at once, also over a loaded one. Must not run beside a scan, whose words and styles it
  // replaces.
  static void OSLoadStyleResources();

  // The component that lists `word`; false, with `component` as it was, when none does.
  static bool MatchStyleComponent(const std::string& word, SStyleComponent& component);
  static std::vector<SStyleComponent> ScanFontForStyleComponents(const std::string& primary,
                                                                 const std::string& secondary);
  // Fills `styles` with the built-in styles found in the names; returns how many.
  static std::int32_t ScanFontForBuiltinStyles(const std::string& primary, const std::string& secondary,
                                               std::vector<SBuiltinStyle>& styles);
  static std::uint32_t FindBuiltinMatchesForStyleComponents(const std::vector<SStyleComponent>& components,
                                                            std::vector<SBuiltinStyle>& styles);
  // Whether the user style occurs in either name, ignoring ASCII case; an empty one always does.
  static bool ScanFontForUserStyle(std::string first, std::string second, std::string user_style);
};

}  // namespace quillmark

#endif
