// The tables of foundries and of classes: which entry answers, over small lists, and what the fixed rules of
// the code rely on in those that ship with the library.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <tuple>

#include "knowledge/classification_mappings.h"
#include "knowledge/foundry_name_table.h"
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
                 "Gamma|same VOID|Capital", "Epsilon|-|nameless number", "Zeta|-|less num"});
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
  EXPECT_FALSE(CFoundryNameTable::IsQuestionableCreatorCode(FourCharCode("ksew")));  // here case counts
}

TEST_F(FoundryNameTableTest, Patterns) {
  const CFoundryNameTable table = Table(foundries);
  const std::pair<const char*, const char*> rows[] = {
      {"A new TYPE OF ALPHA", "Alpha"},  // the earlier entry, not the earlier place
      {"type of alptype", "Beta"},       // found behind the broken-off start of another
      {"devoid", ""},                    // an empty name is a name
      {"Capital capital", nullptr},      // patterns are not lower-cased
      {"nameless numb", "Zeta"},         // found inside the start of another
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

TEST(ClassificationMappingsTest, FamiliesAreLookedUpWholeInLowerCase) {
  const std::string fits(1023, 'x');
  const std::string accented = std::string(1021, 'x') + "é";
  const TableBundle bundle;
  bundle.Write(
      "DefaultClassifications.plist",
      "<dict><key>Mappings</key><dict><key>garamond</key><string>Old Style</string>"
      "<key>étoile</key><string>Ornamental</string><key>Capital</key><string>Never Found</string>"
      "<key></key><string>Empty</string><key>number</key><integer>3</integer><key>fits</key><string>" +
          fits + "</string><key>long</key><string>" + fits + "x</string><key>fité</key><string>" + accented +
          "</string><key>longé</key><string>" + accented + "x</string></dict></dict>");
  const CClassificationMappings table;
  EXPECT_FALSE(table.empty());
  const std::pair<const char*, std::string> rows[] = {
      {"GARAMOND", "Old Style"}, {"ÉTOILE", "Ornamental"}, {"", "Empty"}, {"Fits", fits}, {"Fité", accented}};
  for (const auto& [family, expected] : rows) {
    EXPECT_EQ(table.GetClassNameFromFontFamily(family).str(), expected) << family;
  }
  // The last is not UTF-8, so it has no key, not even the empty one.
  for (const char* family : {"Garamond Premier", " garamond", "Capital", "Number", "Long", "Longé", "\xff"}) {
    EXPECT_EQ(table.GetClassNameFromFontFamily(family).str(), "--") << family;
  }
}

// A list laid out as the shipped one is looked up as text; the same list with other blanks is parsed.
TEST(ClassificationMappingsTest, TheLayoutOfAListMakesNoDifference) {
  const std::string abc =
      "\t\t<key>a</key>\n\t\t<string>A</string>\n\t\t<key>b&amp;c</key>\n\t\t<string>B</string>\n";
  const std::string pairs[] = {
      abc,
      abc + abc,                                            // keys twice
      "\t\t<key>z</key>\n\t\t<string>Z</string>\n" + abc,   // in no order
      "\t\t<key>a&#98;</key>\n\t\t<string>A</string>\n",    // another spelling of ab
      "\t\t<key>a</key>\n\t\t<string>A &lt; B</string>\n",  //
      "\t\t<key>a</key>\n\t\t<string>É</string>\n",         //
      "\t\t<key>a\xff</key>\n\t\t<string>A</string>\n",     // no UTF-8
      "\t\t<key>a</key>\n\t\t<string>A</string>\n\t\t<key>b</key>\n\t\t<integer>1</integer>\n",
      "\t\t<key>a</key>\n\t\t<string>" + std::string(1024, 'x') + "</string>\n",
      "\t\t<key>a</key>\n\t\t<string>A</string>",  // and no line end
      "\t\t<key>é</key>\n\t\t<string>E</string>\n\t\t<key>ö\n</key>\n\t\t<string>O</string>\n",
  };
  const std::pair<std::string, std::string> frames[] = {
      {"<dict>\n\t<key>Mappings</key>\n\t<dict>\n", "\t</dict>\n</dict>"},
      {"<dict><!--\n\t<key>Mappings</key>\n\t<dict>\n", "--><key>Mappings</key><dict/></dict>"},
      {"<dict><key>Other</key><dict>\n\t<key>Mappings</key>\n\t<dict>\n", "</dict></dict></dict>"},
      {"<dict>\n\t<key>Mappings</key>\n\t<dict>\n", "<key>c</key><string>C</string></dict></dict>"},
      {"<dict>\n\t<key>Mappings</key>\n\t<dict>\n", "</dict><key>Mappings</key><array/></dict>"},
      {"<dict>\n\t<key>Mappings</key>\n\t<dict>\n", ""},
  };
  const TableBundle bundle;
  const auto answers = [&](const std::string& list) {
    bundle.Write("DefaultClassifications.plist", list);
    const CClassificationMappings table;
    std::string all = table.empty() ? "empty" : "";
    for (const char* family :
         {"A", "b&c", "z", "ab", "b", "É", "ö\n", "a\xff", "", "pairs", "b&amp;c", "c"}) {
      all += " " + table.GetClassNameFromFontFamily(family).str();
    }
    return all;
  };
  for (const auto& [before, behind] : frames) {
    for (const std::string& entries : pairs) {
      std::string other_blanks = entries;
      std::ranges::replace(other_blanks, '\t', ' ');
      EXPECT_EQ(answers(before + entries + behind), answers(before + other_blanks + behind))
          << before << entries << behind;
    }
  }
  EXPECT_EQ(answers(frames[0].first + abc + frames[0].second), " A B -- -- -- -- -- -- -- -- -- --");
}

TEST(ClassificationMappingsTest, TheAbsentClassIsListedAsTwoHyphens) {
  const TableBundle bundle;
  bundle.Write("DefaultClassifications.plist",
               "<dict><key>Default Classifications</key><array><string>None</string><string>Serif</string>"
               "<true/><string>none</string><string>None</string></array></dict>");
  std::vector<OmString> classes{"left over"};
  CClassificationMappings().GetListOfBuiltinClasses(&classes);
  EXPECT_EQ(classes, (std::vector<OmString>{"--", "Serif", "none", "--"}));
}

TEST(ClassificationMappingsTest, WithoutATableEveryFamilyIsUnknown) {
  const TableBundle bundle;
  for (const char* list : {"", "<array/>", "<dict>", "<dict><key>Mappings</key><array/></dict>"}) {
    if (*list != '\0') bundle.Write("DefaultClassifications.plist", list);
    const CClassificationMappings table;
    EXPECT_TRUE(table.empty()) << list;
    EXPECT_EQ(table.GetClassNameFromFontFamily("garamond").str(), "--") << list;
  }
}

// Stored results carry the canonical name and are asked again.
TEST(ShippedTablesTest, EachFoundryFindsItself) {
  const CFoundryNameTable& table = *CFoundryNameTable::GetSharedFoundryNameTable();
  for (const auto& [name, codes, pattern, none] : RowsOf("../../data/foundries.tsv")) {
    EXPECT_NE(pattern, "") << "the table has no default foundry";
    EXPECT_EQ(OmString(pattern).ToLower().str(), pattern);
    OmString found;
    table.ContainsKnownFoundryName(name, &found);
    EXPECT_EQ(found.str(), name);
  }
  for (const auto code : {FourCharCode("ACp1"), FourCharCode("ACP1"), FourCharCode("ACSC"),
                          FourCharCode("KSet"), FourCharCode("KSew")}) {
    OmString found;
    EXPECT_TRUE(CFoundryNameTable::IsQuestionableCreatorCode(code)) << code;
    EXPECT_FALSE(table.IsKnownCreatorCode(code, &found)) << found.str();
  }
}

// A key that is not its own lower case finds nothing.
TEST(ShippedTablesTest, EachFamilyFindsItsClass) {
  const CClassificationMappings& table = *CClassificationMappings::GetSharedClassificationMappings();
  for (const auto& [family, class_name, basis, none] : RowsOf("../../data/classifications.tsv")) {
    EXPECT_EQ(table.GetClassNameFromFontFamily(family).str(), class_name) << family;
  }
}

}  // namespace
}  // namespace quillmark
