// The keyword table's loading, and the scan from names to style components over a small table.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <thread>

#include "knowledge/font_style_scan.h"
#include "knowledge/keyword_list.h"
#include "knowledge/table_bundle.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string SmallTable() {
  return KeywordList(
      KeywordComponent(0, "Italic I It") + KeywordComponent(1, "Bold B BD") + KeywordComponent(4, "Demi") +
      KeywordComponent(5, "Extra", "<true/>") + KeywordComponent(8, "Black") +
      KeywordComponent(9, "Light Lt LT") + KeywordComponent(12, "Roman") + KeywordComponent(13, "Regular") +
      KeywordComponent(15, "Semi Semibold") + KeywordComponent(16, "Ultra", "<true/>") +
      KeywordComponent(18, "Small", "<true/>") + KeywordComponent(19, "Caps") +
      KeywordComponent(20, "Cond CN") + KeywordComponent(21, "Cyrillic") + KeywordComponent(22, "OsF") +
      KeywordComponent(35, "Thin") + KeywordComponent(50, "Bold Demi Again"));
}

std::vector<int> Scan(const std::string& primary, const std::string& secondary = "") {
  std::vector<int> constants;
  for (const auto& component : OmFontStyleScan::ScanFontForStyleComponents(primary, secondary)) {
    constants.push_back(component.styleConstant);
  }
  return constants;
}

class StyleScannerTest : public testing::Test {
 protected:
  void Load(const std::string& list) {
    bundle().Write("KeywordTable.plist", list);
    OmFontStyleScan::OSLoadStyleResources();
  }
  TableBundle& bundle() { return *bundle_; }
  void RemoveBundle() { bundle_.reset(); }

 private:
  std::optional<TableBundle> bundle_{std::in_place};
};

TEST_F(StyleScannerTest, Names) {
  Load(SmallTable());
  const struct {
    std::string primary;
    std::string secondary;
    std::vector<int> expected;
  } rows[] = {
      // Cutting: the first byte starts no word; capitals lead words; all but letters only separates.
      {"", "", {}},
      {"Bold", "", {}},
      {"xBold", "", {1}},
      {"Minion-BoldItalic", "", {1, 0}},
      {"Times-BI", "", {1, 0}},
      {"Foo-bold Bold2Italic", "", {1, 0}},
      {"Foo-Bold\xc3\xa9It", "", {1, 0}},
      {"Foo-BoldX", "", {1}},
      {"Foo-Bolder", "", {}},
      // Multiple Master suffixes: runs of capitals, from the first underscore on.
      {"MinionMM_215 LT 300 CN", "", {9, 20}},
      {"MinionMMBold_2 LT bBD 300CN", "", {1, 9, 20}},
      {"MinionMM LT", "", {}},
      {"FooMM_XC", "", {5, 20}},
      {"FooMM_XB_XL_UB", "", {5, 9, 5, 8, 16, 8}},
      {"Foo_XC", "", {}},
      {"FooMM_SB", "x", {15}},
      {"FooMM_1_SB", "x Thin Cond", {35, 20, 15}},
      // Old-style figures silence the secondary name.
      {"FooOsF", "x Bold Italic", {22}},
      // Small capitals and Cyrillic, anywhere but at the start.
      {"SCFoo", "", {}},
      {"FSCFoo", "", {18, 19}},
      {"FooSCY-Bold", "", {1, 18, 19, 21}},
      {"FooMMSC-CY", "", {}},
      // A word that no component lists.
      {"Foo-XlightItalic", "", {5, 9, 0}},
      {"x", "Foo-XlightItalic", {0}},
      // The longer list, the primary name's when they are equally long.
      {"Foo-Bold", "Foo Light", {1}},
      {"Foo-Bold", "Foo Light Italic", {9, 0}},
      // Roman and Regular beside a bold or italic.
      {"Foo-RomanRegular", "", {12, 13}},
      {"Foo-RegularBold", "", {1}},
      {"Foo-RomanItalic", "", {0}},
      {"Foo-RomanRegularBold", "", {1}},
      {"Foo-RegularRomanLightBold", "", {12, 1}},  // Regular is gone when the second place is emptied
      {"Foo-RegularBoldRoman", "", {1, 12}},       // and then nothing stands in the third
      {"Foo-RegularRegularBold", "", {13, 1}},
      // A bold beside demi or semi.
      {"Foo-DemiBold", "", {4}},
      {"Foo-BoldDemi", "", {4}},
      {"Foo-Demi", "", {4}},
      {"Foo-SemiBold", "", {15}},
      {"Foo-SemiLight", "", {9}},
      {"Foo-BoldSemi", "", {1}},
      {"Foo-Semibold", "", {15}},
      {"Foo-Semi", "foo Semibold", {15}},
      {"Foo-SemiBoldSemiLight", "", {15, 15, 9}},  // once redundant, the bold stays so
      {"Foo-SemiLightSemi", "", {15, 9}},          // the last one goes
      {"Foo-RegularSemiBold", "", {15, 1}},        // Regular went first, so the third place is empty
      // Helvetica Neue's thin is a light.
      {"HelveticaNeue-Thin", "", {9}},
      {"Helvetica-Thin", "HelveticaNeue", {35}},
      // A trailing ultra is bold.
      {"Foo-Ultra", "", {16, 1}},
      {"Foo-UltraLight", "", {16, 9}},
      {"Foo-ItalicUltra", "", {0, 16, 1}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Scan(row.primary, row.secondary), row.expected) << row.primary << " / " << row.secondary;
  }
}

TEST_F(StyleScannerTest, AddedComponentsHaveNoWords) {
  Load(SmallTable());
  const auto found = OmFontStyleScan::ScanFontForStyleComponents("Foo-Xlight", "");
  ASSERT_EQ(found.size(), 2u);
  EXPECT_TRUE(found[0].isModifier);
  EXPECT_FALSE(found[1].isModifier);
  EXPECT_EQ(found[0].display + found[1].display, "");
  EXPECT_THAT(found[0].matchStrings, IsEmpty());
}

TEST_F(StyleScannerTest, TheFirstComponentThatListsAWordHasIt) {
  Load(SmallTable());
  SStyleComponent component;
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent("Demi", component));
  EXPECT_EQ(component.styleConstant, 4);
  EXPECT_EQ(component.display, "D4");
  EXPECT_THAT(component.matchStrings, ElementsAre("Demi"));
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent("Again", component));
  for (const char* word : {"demi", " Demi", "Dem", ""}) {
    EXPECT_FALSE(OmFontStyleScan::MatchStyleComponent(word, component)) << word;
    EXPECT_EQ(component.styleConstant, 50) << word;
  }
}

TEST_F(StyleScannerTest, MalformedComponentsAreLeftOut) {
  const std::string fits(511, 'F');
  const std::string too_long(512, 'L');
  const std::string full = KeywordComponent(60, "Full");
  const auto without = [&](const std::string& part) {
    std::string element = KeywordComponent(61, "Lacking");
    return element.replace(element.find(part), part.size(), "");
  };
  Load(KeywordList("<string>x</string>" + without("<key>display</key><string>D61</string>") +
                   without("<key>is-modifier</key><false/>") +
                   without("<key>style-constant</key><integer>61</integer>") +
                   without("<key>match-strings</key><array><string>Lacking</string></array>") +
                   KeywordComponent(62, "Number", "<integer>1</integer>") +
                   KeywordComponent(63, too_long + " Short") + KeywordComponent(64, fits) + full));
  SStyleComponent component;
  for (const char* word : {"Lacking", "Number"}) {
    EXPECT_FALSE(OmFontStyleScan::MatchStyleComponent(word, component)) << word;
  }
  EXPECT_FALSE(OmFontStyleScan::MatchStyleComponent(too_long, component));
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent("Short", component));
  EXPECT_THAT(component.matchStrings, ElementsAre("Short"));
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent(fits, component));
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent("Full", component));
}

TEST_F(StyleScannerTest, ALongNameTakesTimeByItsLength) {
  Load(SmallTable());
  std::string name = "Foo";
  while (name.size() < 1'000'000) name += "_SemiThinX";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Scan(name + "MMHelveticaNeue", name).size(), 0u);  // behind the underscore only capitals count
  EXPECT_EQ(Scan(name + "HelveticaNeue", name).size(), 199'999u);  // one Semi goes
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

// Each of these starts a process, in which nothing is loaded yet.
class StyleTableLoadingTest : public StyleScannerTest {
 protected:
  StyleTableLoadingTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  static std::string MessageOfInitialize() {
    try {
      OmFontStyleScan::Initialize();
    } catch (const DataRetrieveError& error) {
      return error.what();
    }
    return "";
  }
  void Exit(bool good) {
    RemoveBundle();
    std::exit(good && !HasFailure() ? 0 : 1);
  }
};

TEST_F(StyleTableLoadingTest, AMalformedTableIsTriedAgain) {
  EXPECT_EXIT(
      {
        bundle().Write("KeywordTable.plist", "<dict><key>Components</key><string>x</string></dict>");
        EXPECT_EQ(MessageOfInitialize(), "KeywordTable.plist - Components array");
        bundle().Write("KeywordTable.plist", "<dict><key>Components</key><array>" +
                                                 KeywordComponent(70, "Once") + "</array></dict>");
        EXPECT_EQ(MessageOfInitialize(), "KeywordTable.plist - Style array");
        EXPECT_THAT(Scan("x Once"), ElementsAre(70));  // the components stay
        bundle().Write("KeywordTable.plist", KeywordList(KeywordComponent(71, "Twice")));
        EXPECT_EQ(MessageOfInitialize(), "");
        EXPECT_THAT(Scan("x Once Twice"), ElementsAre(71));
        bundle().Write("KeywordTable.plist", "<dict/>");
        EXPECT_EQ(MessageOfInitialize(), "");
        Exit(true);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(StyleTableLoadingTest, AMissingTableCountsAsLoaded) {
  EXPECT_EXIT(
      {
        EXPECT_EQ(MessageOfInitialize(), "");
        bundle().Write("KeywordTable.plist", SmallTable());
        EXPECT_EQ(MessageOfInitialize(), "");
        Exit(Scan("x Bold").empty());
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(StyleTableLoadingTest, ThreadsMayLoadAndScanTogether) {
  EXPECT_EXIT(
      {
        bundle().Write("KeywordTable.plist", SmallTable());
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
          threads.emplace_back([] {
            OmFontStyleScan::Initialize();
            EXPECT_THAT(Scan("Foo-DemiBold"), ElementsAre(4));
          });
        }
        for (std::thread& thread : threads) thread.join();
        Exit(true);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace quillmark
