#include "analysis/name_match.h"

#include <gtest/gtest.h>

#include <tuple>

namespace quillmark::GFontToolUtils {
namespace {

TEST(NameMatch, ComparesLettersAndDigitsUpToTheSecondHyphen) {
  for (const auto& [a, b, loose] : {std::tuple("Quill-Bold-Italic", "Qui-llBold-Black", true),
                                    {"Quill\xC3\xA9[@`{/:09AZaz", "Quill09AZaz", true},
                                    {"Quill-Bold", "Quill-bold", false},
                                    {"Quill45", "Quill46", false}}) {
    EXPECT_EQ(DoPostScriptNamesMatch(a, b, false), loose) << a;
    EXPECT_FALSE(DoPostScriptNamesMatch(a, b, true)) << a;
    EXPECT_TRUE(DoPostScriptNamesMatch(a, a, true)) << a;
  }
}

}  // namespace
}  // namespace quillmark::GFontToolUtils
