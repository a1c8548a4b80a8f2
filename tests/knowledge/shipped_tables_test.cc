// The tables that ship with the library: what the fixed rules of the code rely on,
// and the styles that the names of style_names.tsv tell.
#include <gtest/gtest.h>

#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/small_tables.h"
#include "knowledge/table_values.h"
#include "platform/byte_reader.h"
#include "platform/core_foundation/cf_dictionary.h"
#include "support/property_list_values.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

std::string Text(CFDictionaryRef dictionary, const char* key) {
  return OmString(NCFUtils::GetCFStringFromDict(dictionary, TableKey(key).get())).str();
}

TEST(ShippedTablesTest, EachFoundryFindsItself) {
  const auto list = LoadBundlePropertyList("FoundryNameTable.plist", kCFPropertyListImmutable);
  const CFArrayRef entries = AsArray(list.get());
  const CFoundryNameTable& table = *CFoundryNameTable::GetSharedFoundryNameTable();
  ASSERT_FALSE(table.empty());
  for (CFIndex i = 0; i < CFArrayGetCount(entries); ++i) {
    const CFDictionaryRef entry = AsDictionary(CFArrayGetValueAtIndex(entries, i));
    const std::string name = Text(entry, "FoundryName");
    const std::string pattern = Text(entry, "Pattern");
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
    EXPECT_TRUE(CFoundryNameTable::IsQuestionableCreatorCode(code)) << code;
    EXPECT_FALSE(table.IsKnownCreatorCode(code, &found)) << found.str();
  }
}

// A key that is not its own lower case finds nothing.
TEST(ShippedTablesTest, EachFamilyFindsItsClass) {
  const CClassificationMappings& table = *CClassificationMappings::GetSharedClassificationMappings();
  ASSERT_FALSE(table.empty());
  const auto list = LoadBundlePropertyList("DefaultClassifications.plist", kCFPropertyListImmutable);
  const auto mappings =
      AsDictionary(CFDictionaryGetValue(AsDictionary(list.get()), TableKey("Mappings").get()));
  for (const auto& [family, class_name] : mappings->entries) {
    const OmString name(family.get());
    EXPECT_NE(table.GetClassNameFromFontFamily(name).str(), "--") << name.str();
  }
}

// Words that the scanner adds or looks up, some with constants whose meaning it knows.
TEST(ShippedTablesTest, TheScannersWordsAreListed) {
  OmFontStyleScan::OSLoadStyleResources();
  SStyleComponent component;
  const std::pair<const char*, std::int32_t> fixed[] = {
      {"Italic", 0}, {"Bold", 1},     {"Demi", 4},  {"Extra", 5},  {"Light", 9}, {"Lt", 9},
      {"Roman", 12}, {"Regular", 13}, {"Semi", 15}, {"Ultra", 16}, {"Thin", 35}};
  for (const auto& [word, constant] : fixed) {
    EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent(word, component)) << word;
    EXPECT_EQ(component.styleConstant, constant) << word;
  }
  for (const char* word : {"Cond", "Black", "OsF", "Small", "Caps", "Cyrillic"}) {
    EXPECT_TRUE(OmFontStyleScan::MatchStyleComponent(word, component)) << word;
  }
  EXPECT_FALSE(OmFontStyleScan::MatchStyleComponent("Xlight", component));
}

TEST(ShippedTablesTest, NamesTellTheStylesThatAPersonReadsInThem) {
  OmFontStyleScan::OSLoadStyleResources();
  const auto rows = RowsOf("style_names.tsv");
  EXPECT_GT(rows.size(), 300u);
  for (const auto& row : rows) {
    std::vector<SBuiltinStyle> styles;
    std::string found;
    const std::int32_t number = OmFontStyleScan::ScanFontForBuiltinStyles(row[0], row[1], styles);
    EXPECT_EQ(static_cast<std::size_t>(number), styles.size());
    for (const SBuiltinStyle& style : styles) found += (found.empty() ? "" : "; ") + style.display;
    EXPECT_EQ(found, row[2]) << row[0] << " / " << row[1];
  }
}

}  // namespace
}  // namespace quillmark
