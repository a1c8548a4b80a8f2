#include "analysis/name_match.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(NameMatch, ComparesLettersAndDigitsUpToTheSecondHyphen) {
  const struct {
    const char* a;
    const char* b;
    bool loose;
  } rows[] = {
      {"Quill-Bold", "QuillBold", true}, {"Quill-Bold-Italic", "Qui-llBold-Black", true},
      {"Quill\xC3\xA9", "Quill", true},  {"Quill-Bold", "Quill-bold", false},
      {"Quill45", "Quill46", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.a);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, false), row.loose);
    EXPECT_FALSE(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, true));
    EXPECT_TRUE(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.a, true));
  }
}

}  // namespace
}  // namespace quillmark
