// The classification table over small lists.
#include "knowledge/classification_mappings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "knowledge/small_tables.h"

namespace quillmark {
namespace {

std::vector<std::string> BuiltinClasses(const CClassificationMappings& table) {
  std::vector<OmString> classes{"left over"};
  table.GetListOfBuiltinClasses(&classes);
  return {classes.begin(), classes.end()};
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

TEST(ClassificationMappingsTest, TheAbsentClassIsListedAsTwoHyphens) {
  const TableBundle bundle;
  bundle.Write("DefaultClassifications.plist",
               "<dict><key>Default Classifications</key><array><string>None</string><string>Serif</string>"
               "<true/><string>none</string><string>None</string><string>" +
                   std::string(1024, 'x') + "</string></array><key>Mappings</key><dict/></dict>");
  CClassificationMappings table;
  EXPECT_TRUE(table.empty());
  EXPECT_THAT(BuiltinClasses(table), testing::ElementsAre("--", "Serif", "none", "--"));
  const auto unknown = Adopt(OmString("--").GetCFString(kCFStringEncodingUTF8));
  const auto other = Adopt(OmString("Other").GetCFString(kCFStringEncodingUTF8));
  EXPECT_EQ(table.ReplaceDefaultClassification(unknown.get(), other.get()), 2);
  EXPECT_EQ(table.ReplaceDefaultClassification(unknown.get(), other.get()), 0);
  EXPECT_THAT(BuiltinClasses(table), testing::ElementsAre("Other", "Serif", "none", "Other"));
}

TEST(ClassificationMappingsTest, WithoutATableEveryFamilyIsUnknown) {
  const TableBundle bundle;
  for (const char* list : {"", "<array/>", "<dict>", "<dict><key>Mappings</key><array/></dict>"}) {
    if (*list != '\0') bundle.Write("DefaultClassifications.plist", list);
    CClassificationMappings table;
    EXPECT_TRUE(table.empty()) << list;
    EXPECT_EQ(table.GetClassNameFromFontFamily("garamond").str(), "--") << list;
    EXPECT_THAT(BuiltinClasses(table), testing::IsEmpty()) << list;
    EXPECT_EQ(table.ReplaceDefaultClassification(nullptr, nullptr), 0) << list;
  }
}

}  // namespace
}  // namespace quillmark
