// The foundry table over small lists: which entry answers for a creator code and for a text.
#include "knowledge/foundry_name_table.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <sstream>

#include "knowledge/small_tables.h"
#include "platform/byte_reader.h"

namespace quillmark {
namespace {

// Rows of name, codes (behind blanks) and pattern: "-" leaves a key out, "#" is a value of another type.
std::string Foundries(std::initializer_list<const char*> rows) {
  std::string list = "<array><string>no foundry</string>";
  for (const char* const row : rows) {
    std::istringstream fields(row);
    list += "<dict>";
    for (const std::string key : {"FoundryName", "CreatorCode", "Pattern"}) {
      std::string field;
      std::getline(fields, field, '|');
      if (field == "-") continue;
      OmString value(field == "#" ? "<true/>" : "<string>" + field + "</string>");
      const bool is_list = key == "CreatorCode" && field != "#";
      if (is_list) OmString::ReplaceAll(&value, " ", "</string><integer>7</integer><string>");
      list += "<key>" + key + (is_list ? "</key><array>" + value.str() + "</array>" : "</key>" + value.str());
    }
    list += "</dict>";
  }
  return list + "</array>";
}

class FoundryNameTableTest : public testing::Test {
 protected:
  void Write(const std::string& list) { bundle_.Write("FoundryNameTable.plist", list); }
  void WriteFoundries() {
    Write(Foundries({"-|Same|nameless", "Alpha| acsc AB|type of alpha", "Beta|Same|type", "|Void|void",
                     "Gamma|same VOID|Capital", "#|-|number", "Delta|#|#", "Epsilon|-|nameless number"}));
  }

 private:
  TableBundle bundle_;
};

TEST_F(FoundryNameTableTest, CreatorCodes) {
  WriteFoundries();
  const CFoundryNameTable table;
  const std::pair<std::uint32_t, const char*> rows[] = {
      {0, ""},                          // though an empty code is listed
      {FourCharCode("ACSC"), "Alpha"},  // case does not count
      {0x61620000, "Alpha"},            // a zero byte ends the code
      {0x00414243, ""},                 // nothing is left of the code
      {FourCharCode("sAME"), "Beta"},   // the first entry with a name
      {FourCharCode("Void"), "Gamma"},  // an empty name lets the walk go on
      {FourCharCode("true"), ""},       // no list of codes
  };
  for (const auto& [code, expected] : rows) {
    OmString name;
    EXPECT_EQ(table.IsKnownCreatorCode(code, &name), *expected != '\0') << code;
    EXPECT_EQ(name.str(), expected) << code;
  }
  OmString taken("taken");
  EXPECT_FALSE(table.IsKnownCreatorCode(FourCharCode("Same"), &taken));
  EXPECT_EQ(taken.str(), "taken");
  EXPECT_FALSE(CFoundryNameTable::IsQuestionableCreatorCode(FourCharCode("ksew")));  // here case counts
}

TEST_F(FoundryNameTableTest, Patterns) {
  WriteFoundries();
  const CFoundryNameTable table;
  const std::pair<const char*, const char*> rows[] = {
      {"A new TYPE OF ALPHA", "Alpha"},  // the earlier entry, not the earlier place
      {"type of alptype", "Beta"},       // found behind the broken-off start of another
      {"devoid", ""},                    // an empty name is a name
      {"Capital capital", nullptr},      // patterns are not lower-cased
      {"nameless number", "Epsilon"},    // entries without a name are passed over
  };
  for (const auto& [text, expected] : rows) {
    OmString name("before");
    EXPECT_EQ(table.ContainsKnownFoundryName(text, &name), expected != nullptr) << text;
    EXPECT_EQ(name.str(), expected ? expected : "before") << text;
    EXPECT_EQ(table.ContainsKnownFoundryName(text, nullptr), expected != nullptr) << text;
  }
  EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("same"), "type of alpha").str(), "Beta");
  EXPECT_EQ(table.GetCanonicalFoundryName(FourCharCode("none"), "type of alpha").str(), "Alpha");
  EXPECT_EQ(table.GetCanonicalFoundryName(0, "void").str(), "");
  EXPECT_EQ(table.GetCanonicalFoundryName(0, "nobody").str(), "--");
}

TEST_F(FoundryNameTableTest, TheLastDefaultEntryOnTheWayCounts) {
  Write(Foundries({"House|-|", "-|-|", "First|-|first", "Estate|-|", "Second|-|second"}));
  const CFoundryNameTable table;
  for (const auto& [text, expected] : {std::pair("first and second", "House"), {"neither", "Estate"}}) {
    OmString default_name;
    table.ContainsKnownFoundryName(text, nullptr, &default_name);
    EXPECT_EQ(default_name.str(), expected) << text;
  }
  EXPECT_EQ(table.GetCanonicalFoundryName(0, "second").str(), "Second");
  EXPECT_EQ(table.GetCanonicalFoundryName(0, "neither").str(), "Estate");
}

TEST_F(FoundryNameTableTest, WithoutAListEverythingIsUnknown) {
  for (const char* list : {"", "<dict><key>Pattern</key><string>type</string></dict>", "<array>"}) {
    if (*list != '\0') Write(list);
    const CFoundryNameTable table;
    EXPECT_TRUE(table.empty()) << list;
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
    const std::string searched = text(0, 24);
    std::optional<std::uint32_t> expected;
    for (const auto& pattern : patterns) {
      if (!expected && searched.find(pattern.text) != std::string::npos) expected = pattern.rank;
    }
    ASSERT_EQ(FoundryPatternIndex(patterns).SmallestRankIn(searched), expected) << searched;
  }
}

}  // namespace
}  // namespace quillmark
