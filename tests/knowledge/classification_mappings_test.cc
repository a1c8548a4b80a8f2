// The classification table over small lists.
#include "knowledge/classification_mappings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "knowledge/table_bundle.h"

namespace quillmark {
namespace {

std::vector<std::string> BuiltinClasses(const CClassificationMappings& table) {
  std::vector<OmString> classes{"left over"};
  table.GetListOfBuiltinClasses(&classes);
  std::vector<std::string> texts;
  for (const OmString& name : classes) texts.push_back(name.str());
  return texts;
}

TEST(ClassificationMappingsTest, FamiliesAreLookedUpWholeInLowerCase) {
  const TableBundle bundle;
  bundle.Write("DefaultClassifications.plist",
               "<dict><key>Mappings</key><dict>"
               "<key>garamond</key><string>Old Style</string>"
               "<key>étoile</key><string>Ornamental</string>"
               "<key>Capital</key><string>Never Found</string>"
               "<key></key><string>Empty</string>"
               "<key>number</key><integer>3</integer>"
               "<key>fits</key><string>" +
                   std::string(1023, 'x') +
                   "</string>"
                   "<key>toolong</key><string>" +
                   std::string(1024, 'x') +
                   "</string>"
                   "</dict></dict>");
  const CClassificationMappings table;
  const struct {
    const char* family;
    std::string expected;
  } rows[] = {
      {"GARAMOND", "Old Style"},
      {"Garamond Premier", "--"},
      {" garamond", "--"},
      {"ÉTOILE", "Ornamental"},
      {"Capital", "--"},
      {"", "Empty"},
      {"\xff", "--"},  // not UTF-8, so it has no key, not even the empty one
      {"Number", "--"},
      {"Fits", std::string(1023, 'x')},
      {"TooLong", "--"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(table.GetClassNameFromFontFamily(row.family).str(), row.expected) << row.family;
  }
  EXPECT_THAT(BuiltinClasses(table), testing::IsEmpty());
}

TEST(ClassificationMappingsTest, TheAbsentClassIsListedAsTwoHyphens) {
  const TableBundle bundle;
  bundle.Write("DefaultClassifications.plist",
               "<dict><key>Default Classifications</key><array><string>None</string><string>Serif</string>"
               "<true/><string>none</string><string>None</string><string>" +
                   std::string(1024, 'x') + "</string></array></dict>");
  CClassificationMappings table;
  EXPECT_THAT(BuiltinClasses(table), testing::ElementsAre("--", "Serif", "none", "--"));

  const auto unknown = Adopt(OmString("--").GetCFString(kCFStringEncodingUTF8));
  const auto other = Adopt(OmString("Other").GetCFString(kCFStringEncodingUTF8));
  EXPECT_EQ(table.ReplaceDefaultClassification(unknown.get(), other.get()), 2);
  EXPECT_EQ(table.ReplaceDefaultClassification(unknown.get(), other.get()), 0);
  EXPECT_THAT(BuiltinClasses(table), testing::ElementsAre("Other", "Serif", "none", "Other"));
  EXPECT_EQ(table.GetClassNameFromFontFamily("serif").str(), "--");
}

TEST(ClassificationMappingsTest, WithoutATableEveryFamilyIsUnknown) {
  const TableBundle bundle;
  for (const char* list : {"", "<array/>", "<dict>"}) {
    if (*list != '\0') bundle.Write("DefaultClassifications.plist", list);
    CClassificationMappings table;
    EXPECT_EQ(table.GetClassNameFromFontFamily("garamond").str(), "--") << list;
    EXPECT_THAT(BuiltinClasses(table), testing::IsEmpty()) << list;
    EXPECT_EQ(table.ReplaceDefaultClassification(nullptr, nullptr), 0) << list;
  }
}

}  // namespace
}  // namespace quillmark
