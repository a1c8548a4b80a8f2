// From style components to built-in styles, over small tables of styles.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "knowledge/font_style_scan.h"
#include "knowledge/keyword_list.h"
#include "knowledge/table_bundle.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kWeight = "<true/>";
constexpr const char* kOther = "<false/>";

// Constants 5 and 6 are modifiers of the font; 99 compounds.
std::vector<SStyleComponent> Components(const std::vector<int>& constants) {
  std::vector<SStyleComponent> components;
  for (const int constant : constants)
    components.push_back({constant, constant == 5 || constant == 6, false, {}, {}});
  return components;
}

class StyleMatcherTest : public testing::Test {
 protected:
  void LoadStyles(const std::string& styles) {
    bundle_.Write("KeywordTable.plist",
                  KeywordList(KeywordComponent(99, "", "<false/>", "<true/>") + KeywordComponent(1, "Bold") +
                                  KeywordComponent(5, "Extra", "<true/>"),
                              styles));
    OmFontStyleScan::OSLoadStyleResources();
  }

  static std::vector<std::string> Match(const std::vector<int>& constants) {
    std::vector<SBuiltinStyle> styles(3);
    const auto count = OmFontStyleScan::FindBuiltinMatchesForStyleComponents(Components(constants), styles);
    EXPECT_EQ(count, styles.size());
    std::vector<std::string> displays;
    for (const SBuiltinStyle& style : styles) displays.push_back(style.display);
    return displays;
  }

 private:
  TableBundle bundle_;
};

TEST_F(StyleMatcherTest, Rules) {
  struct Style {
    const char* display;
    const char* kind;
    const char* constants;
  };
  const struct {
    const char* rule;
    std::vector<Style> styles;
    std::vector<int> components;
    std::vector<std::string> expected;
  } rows[] = {
      {"no components, no styles", {{"a", kWeight, "1"}}, {}, {}},
      {"no hits", {{"a", kWeight, "1"}}, {2}, {}},
      {"an exact style ends the search",
       {{"pair", kOther, "1 2"}, {"same", kWeight, "2 1"}},
       {1, 2},
       {"pair"}},
      {"also behind better candidates",
       {{"long", kWeight, "1 1 2"}, {"exact", kOther, "1 2"}, {"late", kWeight, "1"}},
       {1, 2},
       {"exact"}},
      {"a lower weight does not reach the search for an exact style",
       {{"long", kWeight, "1 1 2"}, {"exact", kWeight, "1 2"}},
       {1, 2},
       {"long"}},
      {"a constant that is listed twice counts twice",
       {{"once", kWeight, "1 8"}, {"twice", kWeight, "1 1 9"}},
       {1, 2},
       {"twice"}},
      {"and so does a component that occurs twice",
       {{"one", kWeight, "1 8"}, {"two", kWeight, "2 9"}},
       {2, 1, 2},
       {"two"}},
      {"kinds are ranked apart",
       {{"w2", kWeight, "1 2 8"}, {"w1", kWeight, "1 8"}, {"o1", kOther, "3 8"}, {"o2", kOther, "3 7"}},
       {1, 2, 3},
       {"w2", "o1", "o2"}},
      {"of equal scores the shorter",
       {{"l", kWeight, "1 8 9"}, {"s", kWeight, "1 8"}, {"t", kWeight, "2 8"}},
       {1, 2, 3},
       {"s", "t"}},
      {"fully matched below the best survives, if it is not too long",
       {{"full", kWeight, "1"}, {"best", kWeight, "1 2 8"}},
       {1, 2, 3},
       {"full", "best"}},
      {"and goes when it is", {{"full", kWeight, "1 2"}, {"best", kWeight, "3"}}, {1, 2, 3, 3, 3}, {"best"}},
      {"a style that leans on a compounding component is not fully matched",
       {{"full", kWeight, "1 99"}, {"best", kWeight, "1 2 3 8"}},
       {1, 99, 2, 3, 7},
       {"best"}},
      {"a style below the running best is no candidate",
       {{"best", kWeight, "1 2 8"}, {"full", kWeight, "1"}},
       {1, 2, 3},
       {"best"}},
      // Modifiers.
      {"a modifier paired as in the font", {{"pair", kWeight, "5 1"}}, {5, 1, 3}, {"pair"}},
      {"a modifier that the style leaves alone costs nothing", {{"a", kWeight, "1 8"}}, {5, 1, 3}, {"a"}},
      {"a broken pair loses its hit, but has raised the best before: none reaches it, so none is too long",
       {{"pair", kWeight, "5 1"}, {"base", kWeight, "1 8"}, {"full", kWeight, "1"}},
       {5, 2, 1},
       {}},
      {"fully matched ones outlive that",
       {{"full", kWeight, "1"}, {"long", kWeight, "1 2"}, {"pair", kWeight, "5 1 2"}},
       {5, 3, 1, 2, 4},
       {"full", "long"}},
      {"a style left without hits is no candidate and raises nothing",
       {{"mod", kWeight, "5 8"}, {"one", kWeight, "1 8"}},
       {5, 1, 2},
       {"one"}},
      {"the last component qualifies nothing", {{"mod", kOther, "5"}}, {1, 5}, {"mod"}},
      {"the search for a modifier ends at its first pair",
       {{"a", kWeight, "5 1 5 8 5 8"}, {"b", kWeight, "1 8"}},
       {5, 1},
       {"a"}},
      {"a place marked twice takes its successor along, and an emptied list is no candidate",
       {{"a", kWeight, "5 8 5 8 5 1"}, {"b", kWeight, "1 8"}},
       {5, 1},
       {"b"}},
      {"a mark past the end takes neither component nor hit, so that the best is raised",
       {{"a", kWeight, "5 5 5 8"}, {"b", kWeight, "1 8"}},
       {2, 5, 1},
       {}},
      {"an exact style must have all its modifiers paired",
       {{"exact", kWeight, "1 5"}, {"other", kOther, "1 8"}},
       {5, 1},
       {"other"}},
  };
  for (const auto& row : rows) {
    std::string styles;
    for (const Style& style : row.styles) styles += KeywordStyle(style.display, style.kind, style.constants);
    LoadStyles(styles);
    EXPECT_EQ(Match(row.components), row.expected) << row.rule;
  }
}

TEST_F(StyleMatcherTest, NamesToStyles) {
  LoadStyles("<true/>" + KeywordStyle("Bold", kWeight, "1") + KeywordStyle("x", "<integer>1</integer>", "1") +
             KeywordStyle("Extra", kOther, "5"));
  std::vector<SBuiltinStyle> styles(5);
  EXPECT_EQ(OmFontStyleScan::ScanFontForBuiltinStyles("Foo-BoldExtra", "Foo", styles), 2);
  ASSERT_EQ(styles.size(), 2u);
  EXPECT_EQ(styles[0].display, "Bold");
  EXPECT_TRUE(styles[0].isWeight);
  EXPECT_THAT(styles[1].components, ElementsAre(5));
  EXPECT_EQ(OmFontStyleScan::ScanFontForBuiltinStyles("Foo", "Foo", styles), 0);
  EXPECT_THAT(styles, IsEmpty());
}

// Every component is a marked modifier, for every style.
TEST_F(StyleMatcherTest, ManyComponentsCostNoMoreThanTheirNumber) {
  std::string many;
  for (int i = 0; i < 100; ++i) many += KeywordStyle("many", kWeight, "5");
  LoadStyles(many);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Match(std::vector<int>(200'000, 5)).size(), 100u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(UserStyleTest, OccursInEitherNameWithoutRegardToCase) {
  const struct {
    const char* first;
    const char* second;
    const char* style;
    bool expected;
  } rows[] = {
      {"Foo-BoldItalic", "", "dit", true}, {"Foo", "Foo BOLD", "Bold", true},       {"", "", "", true},
      {"Foo-Bo", "ld", "bold", false},     {"Foo \xc3\x89", "", "\xc3\xa9", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(OmFontStyleScan::ScanFontForUserStyle(row.first, row.second, row.style), row.expected)
        << row.first << " / " << row.style;
  }
}

}  // namespace
}  // namespace quillmark
