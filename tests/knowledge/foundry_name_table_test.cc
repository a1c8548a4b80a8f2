// The foundry table over small lists: which entry answers for a creator code and for a text.
#include "knowledge/foundry_name_table.h"

#include <gtest/gtest.h>

#include <random>

#include "knowledge/table_bundle.h"
#include "platform/byte_reader.h"

namespace quillmark {
namespace {

constexpr char kFoundries[] = R"(<array>
  <string>not a foundry</string>
  <dict><key>CreatorCode</key><array><string>Same</string></array><key>Pattern</key><string>nameless</string></dict>
  <dict><key>FoundryName</key><string>Alpha</string>
    <key>CreatorCode</key><array><string></string><integer>7</integer><string>acsc</string><string>AB</string></array>
    <key>Pattern</key><string>type of alpha</string></dict>
  <dict><key>FoundryName</key><string>Beta</string>
    <key>CreatorCode</key><array><string>Same</string></array><key>Pattern</key><string>type</string></dict>
  <dict><key>FoundryName</key><string></string>
    <key>CreatorCode</key><array><string>Void</string></array><key>Pattern</key><string>void</string></dict>
  <dict><key>FoundryName</key><string>Gamma</string>
    <key>CreatorCode</key><array><string>same</string><string>VOID</string></array>
    <key>Pattern</key><string>Capital</string></dict>
  <dict><key>FoundryName</key><integer>1</integer><key>Pattern</key><string>number</string></dict>
  <dict><key>FoundryName</key><string>Delta</string><key>CreatorCode</key><string>Delt</string>
    <key>Pattern</key><true/></dict>
  <dict><key>FoundryName</key><string>Epsilon</string><key>Pattern</key><string>nameless number</string></dict>
</array>)";

// Two default entries, one before and one behind "first", and a nameless one that counts for nothing.
constexpr char kDefaults[] = R"(<array>
  <dict><key>FoundryName</key><string>House</string><key>Pattern</key><string></string></dict>
  <dict><key>Pattern</key><string></string></dict>
  <dict><key>FoundryName</key><string>First</string><key>Pattern</key><string>first</string></dict>
  <dict><key>FoundryName</key><string>Estate</string><key>Pattern</key><string></string></dict>
  <dict><key>FoundryName</key><string>Second</string><key>Pattern</key><string>second</string></dict>
</array>)";

class FoundryNameTableTest : public testing::Test {
 protected:
  void Write(std::string_view list) { bundle_.Write("FoundryNameTable.plist", list); }

 private:
  TableBundle bundle_;
};

TEST_F(FoundryNameTableTest, QuestionableCodesAreFiveAndHeedCase) {
  for (const auto code : {FourCharCode("ACp1"), FourCharCode("ACP1"), FourCharCode("ACSC"),
                          FourCharCode("KSet"), FourCharCode("KSew")}) {
    EXPECT_TRUE(CFoundryNameTable::IsQuestionableCreatorCode(code)) << code;
  }
  for (const auto code : {FourCharCode("acsc"), FourCharCode("ACSc"), FourCharCode("kset"), 0u}) {
    EXPECT_FALSE(CFoundryNameTable::IsQuestionableCreatorCode(code)) << code;
  }
}

TEST_F(FoundryNameTableTest, CreatorCodes) {
  Write(kFoundries);
  const CFoundryNameTable table;
  const struct {
    const char* what;
    std::uint32_t code;
    bool known;
    const char* name;
  } rows[] = {
      {"zero, though an empty code is listed", 0, false, ""},
      {"case does not count", FourCharCode("ACSC"), true, "Alpha"},
      {"a zero byte ends the code", 0x61620000, true, "Alpha"},
      {"nothing is left of the code", 0x00414243, false, ""},
      {"the first entry with a name", FourCharCode("sAME"), true, "Beta"},
      {"an empty name lets the walk go on", FourCharCode("Void"), true, "Gamma"},
      {"a string is no list of codes", FourCharCode("Delt"), false, ""},
      {"listed nowhere", FourCharCode("none"), false, ""},
  };
  for (const auto& row : rows) {
    OmString name;
    EXPECT_EQ(table.IsKnownCreatorCode(row.code, &name), row.known) << row.what;
    EXPECT_EQ(name.str(), row.name) << row.what;
  }
  OmString taken("taken");
  EXPECT_FALSE(table.IsKnownCreatorCode(FourCharCode("Same"), &taken));
  EXPECT_EQ(taken.str(), "taken");
}

TEST_F(FoundryNameTableTest, Patterns) {
  Write(kFoundries);
  const CFoundryNameTable table;
  const struct {
    const char* text;
    bool known;
    const char* name;
  } rows[] = {
      {"A new TYPE OF ALPHA", true, "Alpha"},  // the earlier entry, not the earlier place
      {"type of gamma", true, "Beta"},
      {"type of alptype", true, "Beta"},  // found behind the broken-off start of another
      {"type ofvoid", true, "Beta"},
      {"devoid", true, ""},                  // an empty name is a name
      {"Capital capital", false, "before"},  // patterns are not lower-cased
      {"nameless number", true, "Epsilon"},  // entries without a name are passed over
      {"number", false, "before"},
      {"", false, "before"},
  };
  for (const auto& row : rows) {
    OmString name("before");
    EXPECT_EQ(table.ContainsKnownFoundryName(row.text, &name), row.known) << row.text;
    EXPECT_EQ(name.str(), row.name) << row.text;
    EXPECT_EQ(table.ContainsKnownFoundryName(row.text, nullptr), row.known) << row.text;
  }
}

TEST_F(FoundryNameTableTest, TheLastDefaultEntryOnTheWayCounts) {
  Write(kDefaults);
  const CFoundryNameTable table;
  const struct {
    const char* text;
    const char* default_name;
    const char* canonical;
  } rows[] = {{"first and second", "House", "First"},
              {"second", "Estate", "Second"},
              {"neither", "Estate", "Estate"}};
  for (const auto& row : rows) {
    OmString default_name;
    table.ContainsKnownFoundryName(row.text, nullptr, &default_name);
    EXPECT_EQ(default_name.str(), row.default_name) << row.text;
    EXPECT_EQ(table.GetCanonicalFoundryName(0, row.text).str(), row.canonical) << row.text;
  }
}

TEST_F(FoundryNameTableTest, CanonicalNameTakesTheCodeBeforeTheText) {
  Write(kFoundries);
  const CFoundryNameTable table;
  EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("same"), "type of alpha").str(), "Beta");
  EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("none"), "type of alpha").str(), "Alpha");
  EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("none"), "void").str(), "");
  EXPECT_EQ(table.GetCanonicalFoundryName(0, "nobody").str(), "--");
}

TEST_F(FoundryNameTableTest, WithoutAListEverythingIsUnknown) {
  for (const char* list : {"", "<dict><key>Pattern</key><string>type</string></dict>", "<array>"}) {
    if (*list != '\0') Write(list);
    const CFoundryNameTable table;
    OmString name;
    EXPECT_FALSE(table.IsKnownCreatorCode(FourCharCode("Same"), &name)) << list;
    EXPECT_FALSE(table.ContainsKnownFoundryName("type", &name, &name)) << list;
    EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("Same"), "type").str(), "--") << list;
  }
}

// Over two letters patterns overlap, contain each other and repeat, and texts hold many of them.
TEST(FoundryPatternIndexTest, AnswersAsTheWalkOverTheTableWould) {
  std::mt19937 random(20);
  const auto text = [&](unsigned shortest, unsigned longest) {
    std::string made(shortest + random() % (longest - shortest + 1), 'a');
    for (char& c : made) c = random() % 2 ? 'a' : '\xe9';
    return made;
  };
  for (int round = 0; round < 500; ++round) {
    std::vector<FoundryPatternIndex::Pattern> patterns;
    for (std::uint32_t i = 0; i < 12; ++i) patterns.push_back({text(2, 8), i});
    const FoundryPatternIndex index(patterns);
    const std::string searched = text(0, 24);
    std::optional<std::uint32_t> expected;
    for (const auto& pattern : patterns) {
      if (!expected && searched.find(pattern.text) != std::string::npos) expected = pattern.rank;
    }
    ASSERT_EQ(index.SmallestRankIn(searched), expected) << searched;
  }
}

}  // namespace
}  // namespace quillmark
