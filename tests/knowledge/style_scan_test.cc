// The keyword table: its loading, the scan from names to components, and the match from these to styles; over
// small tables, and over the one that ships with the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <iterator>
#include <optional>
#include <sstream>
#include <vector>

#include "knowledge/font_style_scan.h"
#include "knowledge/keyword_table.h"
#include "knowledge/small_tables.h"

namespace quillmark {
namespace {

constexpr char kComponents[] =
    "0 Italic I It, 1 Bold B BD, 4 Demi, 5m Extra, 8 Black, 9 Light Lt LT, 12 Roman, 13 Regular, "
    "15m Semi Semibold, 16m Ultra, 18m Small, 19 Caps, 20 Cond CN, 21 Cyrillic, 22 OsF, 35 Thin, 50 Bold "
    "Demi";

std::string Scan(const std::string& primary, const std::string& secondary = "") {
  std::string constants;
  for (const auto& component : OmFontStyleScan::ScanFontForStyleComponents(primary, secondary)) {
    constants += (constants.empty() ? "" : " ") + std::to_string(component.styleConstant);
  }
  return constants;
}

std::string Displays(const std::vector<SBuiltinStyle>& styles) {
  std::string displays;
  for (const SBuiltinStyle& style : styles) displays += (displays.empty() ? "" : "; ") + style.display;
  return displays;
}

class StyleScanTest : public testing::Test {
 protected:
  void Write(const std::string& list) { bundle_->Write("KeywordTable.plist", list); }
  void Load(const std::string& list) {
    Write(list);
    OmFontStyleScan::OSLoadStyleResources();
  }
  // In a process in which nothing is loaded yet.
  template <typename Steps>
  void TryInNewProcess(const Steps& steps) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto tries = [&] {
      steps();
      bundle_.reset();
      std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(tries(), testing::ExitedWithCode(0), "");
  }

  std::optional<TableBundle> bundle_{std::in_place};
};

TEST_F(StyleScanTest, NamesGiveComponents) {
  Load(KeywordList(kComponents));
  for (const auto& row : RowsOf("style_scans.tsv"))
    EXPECT_EQ(Scan(row[0], row[1]), row[2]) << row[0] << row[3];
  const auto added = OmFontStyleScan::ScanFontForStyleComponents("Foo-Xlight", "");
  EXPECT_TRUE(added[0].isModifier && !added[1].isModifier);
}

// Of components, 5 is a modifier.
TEST_F(StyleScanTest, ComponentsGiveStyles) {
  for (const auto& row : RowsOf("style_matches.tsv")) {
    Load(KeywordList("99c, 1 Bold, 5m Extra", row[0]));
    std::istringstream constants(row[1]);
    std::vector<SStyleComponent> components;
    for (int constant = 0; constants >> constant;)
      components.push_back({constant, constant == 5, false, {}, {}});
    std::vector<SBuiltinStyle> found(3);
    const auto count = OmFontStyleScan::FindBuiltinMatchesForStyleComponents(components, found);
    EXPECT_EQ(std::pair(Displays(found), found.size()), std::pair(row[2], std::size_t{count})) << row[3];
  }
}

TEST_F(StyleScanTest, MalformedElementsAreLeftOut) {
  const std::string fits(511, 'F');
  const std::string too_long = "<string>" + fits + "F";
  const std::string good = KeywordList("60 Full " + fits + " " + fits + "F", "Bold w 7");
  Load(good);
  SStyleComponent component;
  EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent(fits, component));
  EXPECT_EQ(component.matchStrings.size(), 2u);  // without the one that is too long
  EXPECT_FALSE(KeywordTable::Shared().empty());
  for (const auto& [part, spoilt] : {std::pair("<key>display</key><string>60</string>", ""),
                                     {"<string>60", too_long.c_str()},
                                     {"<key>is-modifier</key><false/>", ""},
                                     {"style-constant", "x"},
                                     {"match-strings", "x"},
                                     {"components", "x"},
                                     {"<string>Bold</string>", "<true/>"},
                                     {"isweight", "x"}}) {
    std::string list = good;
    Load(list.replace(list.find(part), std::strlen(part), spoilt));
    EXPECT_TRUE(KeywordTable::Shared().empty()) << part;
  }
}

TEST_F(StyleScanTest, ALongNameTakesTimeByItsLength) {
  std::string many_styles;
  for (int i = 0; i < 100; ++i) many_styles += "m w 15,";
  Load(KeywordList(kComponents, many_styles));
  std::string name = "Foo";
  while (name.size() < 1'000'000) name += "_SemiThinX";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Scan(name + "MMHelveticaNeue", name), "");  // behind the underscore only capitals count
  name += "HelveticaNeue";
  EXPECT_EQ(OmFontStyleScan::ScanFontForStyleComponents(name, name).size(), 199'999u);  // one Semi goes
  std::vector<SBuiltinStyle> styles;
  EXPECT_EQ(OmFontStyleScan::ScanFontForBuiltinStyles(name, "", styles), 0) << "each Semi is struck";
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(StyleScanTest, AMalformedTableIsTriedAgainAndAGoodOneStays) {
  TryInNewProcess([this] {
    Write("<dict><key>Components</key><string>x</string></dict>");
    EXPECT_THAT(OmFontStyleScan::Initialize,
                testing::ThrowsMessage<DataRetrieveError>("KeywordTable.plist - Components array"));
    Write("<dict><key>Components</key>" + KeywordElements("70 Once", false) + "</dict>");
    EXPECT_THAT(OmFontStyleScan::Initialize,
                testing::ThrowsMessage<DataRetrieveError>("KeywordTable.plist - Style array"));
    EXPECT_EQ(Scan("x Once"), "70");  // the components stay
    Write(KeywordList(kComponents));
    OmFontStyleScan::Initialize();
    EXPECT_EQ(Scan("Foo-OnceDemiBold"), "4");
    Write("<dict/>");
    OmFontStyleScan::Initialize();
  });
}

TEST_F(StyleScanTest, AMissingTableCountsAsLoaded) {
  TryInNewProcess([this] {
    OmFontStyleScan::Initialize();
    Write(KeywordList(kComponents));
    OmFontStyleScan::Initialize();
    EXPECT_EQ(Scan("x Bold"), "");
  });
}

TEST(UserStyleTest, OccursInEitherNameWithoutRegardToCase) {
  EXPECT_TRUE(OmFontStyleScan::ScanFontForUserStyle("Foo-BoldItalic", "", "dit"));
  EXPECT_TRUE(OmFontStyleScan::ScanFontForUserStyle("Foo", "Foo BOLD", "Bold"));
}

TEST(ShippedKeywordTableTest, NamesTellTheStylesThatAPersonReadsInThem) {
  OmFontStyleScan::OSLoadStyleResources();
  for (const auto& row : RowsOf("style_names.tsv")) {
    std::vector<SBuiltinStyle> styles;
    const std::int32_t count = OmFontStyleScan::ScanFontForBuiltinStyles(row[0], row[1], styles);
    EXPECT_EQ(std::pair(Displays(styles), std::ssize(styles)), std::pair(row[2], std::ptrdiff_t{count}))
        << row[0];
  }
}

}  // namespace
}  // namespace quillmark
