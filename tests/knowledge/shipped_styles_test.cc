// Pairs of PostScript name and full name with the styles that a person reads in them, over the shipped table.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "knowledge/font_style_scan.h"

namespace quillmark {
namespace {

TEST(ShippedStylesTest, NamesTellTheStylesThatAPersonReadsInThem) {
  ASSERT_NO_THROW(OmFontStyleScan::OSLoadStyleResources());
  std::ifstream rows(QM_TEST_STYLE_NAMES);
  std::string line;
  ASSERT_TRUE(std::getline(rows, line));  // the header
  int count = 0;
  while (std::getline(rows, line)) {
    std::istringstream fields(line);
    std::string primary, secondary, expected;
    std::getline(fields, primary, '\t');
    std::getline(fields, secondary, '\t');
    std::getline(fields, expected, '\t');
    std::vector<SBuiltinStyle> styles;
    OmFontStyleScan::ScanFontForBuiltinStyles(primary, secondary, styles);
    std::string found;
    for (const SBuiltinStyle& style : styles) found += (found.empty() ? "" : "; ") + style.display;
    EXPECT_EQ(found, expected) << primary << " / " << secondary;
    ++count;
  }
  EXPECT_GT(count, 300);
}

}  // namespace
}  // namespace quillmark
