// From style components to built-in styles, over small tables of styles.
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "knowledge/font_style_scan.h"
#include "knowledge/small_tables.h"

namespace quillmark {
namespace {

// The styles that components of these constants stand for; 5 is a modifier of the font.
std::string Match(const TableBundle& bundle, const std::string& styles, const std::vector<int>& constants) {
  bundle.Write("KeywordTable.plist", KeywordList("99c, 1 Bold, 5m Extra", styles));
  OmFontStyleScan::OSLoadStyleResources();
  std::vector<SStyleComponent> components;
  for (const int constant : constants) components.push_back({constant, constant == 5, false, {}, {}});
  std::vector<SBuiltinStyle> found(3);
  const auto count = OmFontStyleScan::FindBuiltinMatchesForStyleComponents(components, found);
  EXPECT_EQ(count, found.size());
  std::string displays;
  for (const SBuiltinStyle& style : found) displays += (displays.empty() ? "" : " ") + style.display;
  return displays;
}

TEST(StyleMatcherTest, Rules) {
  const TableBundle bundle;
  for (const auto& row : RowsOf("style_matches.tsv")) {
    std::istringstream constants(row[1]);
    EXPECT_EQ(Match(bundle, row[0], {std::istream_iterator<int>(constants), {}}), row[2]) << row[3];
  }
}

TEST(UserStyleTest, OccursInEitherNameWithoutRegardToCase) {
  EXPECT_TRUE(OmFontStyleScan::ScanFontForUserStyle("Foo-BoldItalic", "", "dit"));
  EXPECT_TRUE(OmFontStyleScan::ScanFontForUserStyle("Foo", "Foo BOLD", "Bold"));
  EXPECT_FALSE(OmFontStyleScan::ScanFontForUserStyle("Foo-Bo", "ld \xc3\x89", "bold"));
  EXPECT_FALSE(OmFontStyleScan::ScanFontForUserStyle("\xc3\x89", "", "\xc3\xa9")) << "ASCII letters only";
}

}  // namespace
}  // namespace quillmark
