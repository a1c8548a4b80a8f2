// The tables that ship with the library: what the fixed rules of the code rely on,
// and the styles that the names of style_names.tsv tell.
#include <gtest/gtest.h>

#include <iterator>

#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/small_tables.h"
#include "knowledge/table_values.h"
#include "platform/byte_reader.h"
#include "platform/core_foundation/cf_array.h"
#include "platform/core_foundation/cf_dictionary.h"
#include "support/property_list_values.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

// Stored results carry the canonical name and are asked again.
TEST(ShippedTablesTest, EachFoundryFindsItself) {
  const auto list = LoadBundlePropertyList("FoundryNameTable.plist", kCFPropertyListImmutable);
  const CFoundryNameTable& table = *CFoundryNameTable::GetSharedFoundryNameTable();
  ASSERT_FALSE(table.empty());
  for (const auto& entry : AsArray(list.get())->values) {
    const auto text = [&entry](const char* key) {
      return OmString(NCFUtils::GetCFStringFromDict(AsDictionary(entry.get()), TableKey(key).get()));
    };
    OmString pattern = text("Pattern");
    EXPECT_NE(pattern.str(), "") << "the table has no default foundry";
    EXPECT_EQ(OmString(pattern).ToLower().str(), pattern.str());
    OmString found;
    table.ContainsKnownFoundryName(text("FoundryName"), &found);
    EXPECT_EQ(found.str(), text("FoundryName").str());
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

TEST(ShippedTablesTest, NamesTellTheStylesThatAPersonReadsInThem) {
  OmFontStyleScan::OSLoadStyleResources();
  for (const auto& row : RowsOf("style_names.tsv")) {
    std::vector<SBuiltinStyle> styles;
    std::string found;
    const std::int32_t count = OmFontStyleScan::ScanFontForBuiltinStyles(row[0], row[1], styles);
    EXPECT_EQ(count, std::ssize(styles));
    for (const SBuiltinStyle& style : styles) found += (found.empty() ? "" : "; ") + style.display;
    EXPECT_EQ(found, row[2]) << row[0] << " / " << row[1];
  }
}

}  // namespace
}  // namespace quillmark
