// From style components to built-in styles, over small tables of styles.
#include <gtest/gtest.h>

#include <chrono>
#include <iterator>
#include <sstream>

#include "knowledge/font_style_scan.h"
#include "knowledge/small_tables.h"

namespace quillmark {
namespace {

class StyleMatcherTest : public testing::Test {
 protected:
  void LoadStyles(const std::string& styles) {
    bundle_.Write("KeywordTable.plist", KeywordList("99c, 1 Bold, 5m Extra", styles));
    OmFontStyleScan::OSLoadStyleResources();
  }

  // Constant 5 is a modifier of the font.
  static std::string Match(const std::vector<int>& constants) {
    std::vector<SStyleComponent> components;
    for (const int constant : constants) components.push_back({constant, constant == 5, false, {}, {}});
    std::vector<SBuiltinStyle> styles(3);
    const auto count = OmFontStyleScan::FindBuiltinMatchesForStyleComponents(components, styles);
    EXPECT_EQ(count, styles.size());
    std::string displays;
    for (const SBuiltinStyle& style : styles) displays += (displays.empty() ? "" : " ") + style.display;
    return displays;
  }

 private:
  TableBundle bundle_;
};

TEST_F(StyleMatcherTest, Rules) {
  for (const auto& row : RowsOf("style_matches.tsv")) {
    LoadStyles(row[0]);
    std::istringstream constants(row[1]);
    EXPECT_EQ(Match({std::istream_iterator<int>(constants), {}}), row[2]) << row[3];
  }
}

TEST_F(StyleMatcherTest, ManyComponentsCostNoMoreThanTheirNumber) {
  std::string many;
  for (int i = 0; i < 100; ++i) many += "m w 5,";
  LoadStyles(many);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Match(std::vector<int>(200'000, 5)).size(), 199u);  // each a marked modifier, for every style
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(UserStyleTest, OccursInEitherNameWithoutRegardToCase) {
  const auto occurs = OmFontStyleScan::ScanFontForUserStyle;
  EXPECT_TRUE(occurs("Foo-BoldItalic", "", "dit"));
  EXPECT_TRUE(occurs("Foo", "Foo BOLD", "Bold"));
  EXPECT_TRUE(occurs("", "", ""));
  EXPECT_FALSE(occurs("Foo-Bo", "ld", "bold"));
  EXPECT_FALSE(occurs("Foo \xc3\x89", "", "\xc3\xa9"));  // only ASCII letters have a case
}

}  // namespace
}  // namespace quillmark
