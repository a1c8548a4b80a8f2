// The tables that ship with the library: what their formats ask for and the fixed rules of the code rely on.
#include <gtest/gtest.h>

#include <set>

#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/table_values.h"
#include "platform/byte_reader.h"
#include "platform/cf_dictionary.h"
#include "support/property_list_values.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

std::vector<CFDictionaryRef> Dictionaries(CFArrayRef array) {
  std::vector<CFDictionaryRef> dictionaries;
  for (CFIndex i = 0; array && i < CFArrayGetCount(array); ++i) {
    dictionaries.push_back(AsDictionary(CFArrayGetValueAtIndex(array, i)));
    EXPECT_NE(dictionaries.back(), nullptr) << i;
  }
  return dictionaries;
}

std::string Text(CFDictionaryRef dictionary, const char* key) {
  return OmString(NCFUtils::GetCFStringFromDict(dictionary, TableKey(key).get())).str();
}

CFArrayRef Array(CFDictionaryRef dictionary, const char* key) {
  return NCFUtils::GetCFArrayFromDict(dictionary, TableKey(key).get());
}

TEST(ShippedTablesTest, Foundries) {
  const auto list = LoadBundlePropertyList("FoundryNameTable.plist", kCFPropertyListImmutable);
  const CFoundryNameTable& table = *CFoundryNameTable::GetSharedFoundryNameTable();
  const auto entries = Dictionaries(AsArray(list.get()));
  EXPECT_GT(entries.size(), 900u);
  for (const CFDictionaryRef entry : entries) {
    const std::string name = Text(entry, "FoundryName");
    const std::string pattern = Text(entry, "Pattern");
    EXPECT_NE(name, "");
    EXPECT_NE(pattern, "") << name;  // the table has no default foundry
    EXPECT_EQ(OmString(pattern).ToLower().str(), pattern);
    // Stored results carry the canonical name and are asked again.
    OmString found;
    EXPECT_TRUE(table.ContainsKnownFoundryName(name, &found)) << name;
    EXPECT_EQ(found.str(), name);
  }
  for (const auto code : {FourCharCode("ACp1"), FourCharCode("ACP1"), FourCharCode("ACSC"),
                          FourCharCode("KSet"), FourCharCode("KSew")}) {
    OmString found;
    EXPECT_FALSE(table.IsKnownCreatorCode(code, &found)) << found.str();
  }
}

TEST(ShippedTablesTest, ClassesOfFamiliesAreListedOnes) {
  const CClassificationMappings& table = *CClassificationMappings::GetSharedClassificationMappings();
  std::vector<OmString> classes;
  table.GetListOfBuiltinClasses(&classes);
  ASSERT_FALSE(classes.empty());
  EXPECT_EQ(classes.front().str(), "--");
  std::set<std::string> known;
  for (const OmString& name : classes) known.insert(name.str());

  const auto list = LoadBundlePropertyList("DefaultClassifications.plist", kCFPropertyListImmutable);
  const auto mappings =
      AsDictionary(CFDictionaryGetValue(AsDictionary(list.get()), TableKey("Mappings").get()));
  ASSERT_NE(mappings, nullptr);
  EXPECT_GT(mappings->entries.size(), 20'000u);
  for (const auto& [family, class_number] : mappings->entries) {
    // A key that is not its own lower case finds nothing.
    const OmString name(family.get());
    EXPECT_TRUE(known.contains(table.GetClassNameFromFontFamily(name).str())) << name.str();
    EXPECT_NE(table.GetClassNameFromFontFamily(name).str(), "--") << name.str();
  }
}

TEST(ShippedTablesTest, Keywords) {
  const auto list = LoadBundlePropertyList("KeywordTable.plist", kCFPropertyListImmutable);
  const CFDictionaryRef root = AsDictionary(list.get());
  ASSERT_NE(root, nullptr);
  std::set<std::int32_t> constants;
  std::set<std::string> words;
  for (const CFDictionaryRef component : Dictionaries(Array(root, "Components"))) {
    const std::string display = Text(component, "display");
    std::int32_t constant = 0;
    bool flag = false;
    EXPECT_NE(NCFUtils::GetCFStringFromDict(component, TableKey("display").get()), nullptr);
    EXPECT_TRUE(NCFUtils::GetLongFromDict(component, TableKey("style-constant").get(), constant)) << display;
    EXPECT_TRUE(NCFUtils::GetBoolFromDict(component, TableKey("is-modifier").get(), flag)) << display;
    EXPECT_TRUE(NCFUtils::GetBoolFromDict(component, TableKey("compounds").get(), flag)) << display;
    EXPECT_TRUE(constants.insert(constant).second) << display;
    const CFArrayRef spellings = Array(component, "match-strings");
    ASSERT_NE(spellings, nullptr) << display;
    for (CFIndex i = 0; i < CFArrayGetCount(spellings); ++i) {
      const std::string word = OmString(AsString(CFArrayGetValueAtIndex(spellings, i))).str();
      EXPECT_TRUE(words.insert(word).second) << word << " stands twice";
    }
  }
  // Words that the scanner adds or looks up, with the constants whose meaning it knows.
  OmFontStyleScan::OSLoadStyleResources();
  const std::pair<const char*, std::int32_t> fixed[] = {
      {"Italic", 0}, {"Bold", 1},     {"Demi", 4},  {"Extra", 5},  {"Light", 9}, {"Lt", 9},
      {"Roman", 12}, {"Regular", 13}, {"Semi", 15}, {"Ultra", 16}, {"Thin", 35}};
  for (const auto& [word, constant] : fixed) {
    SStyleComponent component;
    EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent(word, component)) << word;
    EXPECT_EQ(component.styleConstant, constant) << word;
  }
  for (const char* word : {"Cond", "Black", "OsF", "Small", "Caps", "Cyrillic"}) {
    EXPECT_TRUE(words.contains(word)) << word;
  }
  EXPECT_FALSE(words.contains("Xlight"));

  for (const CFDictionaryRef style : Dictionaries(Array(root, "Styles"))) {
    const std::string display = Text(style, "display");
    bool weight = false;
    EXPECT_NE(display, "");
    EXPECT_TRUE(NCFUtils::GetBoolFromDict(style, TableKey("isweight").get(), weight)) << display;
    const CFArrayRef parts = Array(style, "components");
    ASSERT_NE(parts, nullptr) << display;
    for (CFIndex i = 0; i < CFArrayGetCount(parts); ++i) {
      std::int32_t constant = -1;
      EXPECT_TRUE(NCFUtils::GetLongFromCFValue(CFArrayGetValueAtIndex(parts, i), constant)) << display;
      EXPECT_TRUE(constants.contains(constant)) << display << ": " << constant;
    }
  }
}

}  // namespace
}  // namespace quillmark
