// The foundry table over small lists: which entry answers for a creator code and for a text.
#include "knowledge/foundry_name_table.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "knowledge/small_tables.h"
#include "platform/byte_reader.h"

namespace quillmark {
namespace {

// Rows of name, codes (behind blanks) and pattern; "-" leaves a key out.
std::string Foundries(std::initializer_list<const char*> rows) {
  std::string list = "<array><string>no foundry</string>";
  for (const char* const row : rows) {
    std::istringstream fields(row);
    list += "<dict>";
    for (const char* const key : {"FoundryName", "CreatorCode", "Pattern"}) {
      std::string field;
      std::getline(fields, field, '|');
      if (field == "-") continue;
      OmString value("<string>" + field + "</string>");
      if (*key == 'C') value = "<array>" + value.str() + "</array>";
      if (*key == 'C') OmString::ReplaceAll(&value, " ", "</string><integer>7</integer><string>");
      list += std::string("<key>") + key + "</key>" + value.str();
    }
    list += "</dict>";
  }
  return list + "</array>";
}

struct FoundryNameTableTest : testing::Test {
  CFoundryNameTable Table(const std::string& list) const {
    bundle.Write("FoundryNameTable.plist", list);
    return {};
  }
  const TableBundle bundle;
  const std::string foundries =
      Foundries({"-|Same|nameless", "Alpha| acsc AB|type of alpha", "Beta|Same|type", "|Void|void",
                 "Gamma|same VOID|Capital", "Epsilon|-|nameless number"});
};

TEST_F(FoundryNameTableTest, CreatorCodes) {
  const CFoundryNameTable table = Table(foundries);
  const std::pair<std::uint32_t, const char*> rows[] = {
      {0, ""},                          // though an empty code is listed
      {FourCharCode("ACSC"), "Alpha"},  // case does not count
      {0x61620000, "Alpha"},            // a zero byte ends the code
      {0x00414243, ""},                 // nothing is left of the code
      {FourCharCode("sAME"), "Beta"},   // the first entry with a name
      {FourCharCode("Void"), "Gamma"},  // an empty name lets the walk go on
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
  const CFoundryNameTable table = Table(foundries);
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
}

TEST_F(FoundryNameTableTest, CodesThenPatternsThenTheLastDefaultOnTheWay) {
  const std::string defaults =
      Foundries({"House|-|", "-|-|", "First|-|first", "Estate|-|", "Second|-|second"});
  const std::tuple<std::string, std::uint32_t, const char*, const char*> rows[] = {
      {foundries, FourCharCode("same"), "type of alpha", "Beta"},
      {foundries, FourCharCode("none"), "type of alpha", "Alpha"},
      {foundries, 0, "void", ""},
      {foundries, 0, "nobody", "--"},
      {defaults, 0, "second", "Second"},
      {defaults, 0, "neither", "Estate"},
      {"<dict><key>Pattern</key><string>type</string></dict>", FourCharCode("Same"), "type", "--"},
      {"<array>", FourCharCode("Same"), "type", "--"},
  };
  for (const auto& [list, code, text, expected] : rows) {
    EXPECT_EQ(Table(list).GetCanonicalFoundryName(code, text).str(), expected) << text;
  }
  OmString default_name;
  Table(defaults).ContainsKnownFoundryName("first and second", nullptr, &default_name);
  EXPECT_EQ(default_name.str(), "House");
  EXPECT_TRUE(Table("<array>").empty());
}

}  // namespace
}  // namespace quillmark
