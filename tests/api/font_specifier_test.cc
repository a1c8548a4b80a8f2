#include "api/font_specifier.h"

#include <gtest/gtest.h>

#include "api/face_builder.h"
#include "api/match.h"

namespace quillmark {
namespace {

TEST(FontSpecifier, ComparesEachAttributeOnItsOwn) {
  const struct {
    std::uint32_t attribute;
    OmString QM_FontSpecifier::*text;
    std::uint32_t QM_FontSpecifier::*number = nullptr;
  } rows[] = {
      {0x2, &QM_FontSpecifier::kind},
      {0x1000, &QM_FontSpecifier::family},
      {0x1, &QM_FontSpecifier::postScriptName},
      {0x4, &QM_FontSpecifier::foundry},
      {0x8, &QM_FontSpecifier::version},
      {0x2000, &QM_FontSpecifier::outlineFileName},
      {0x10, nullptr, &QM_FontSpecifier::kerningChecksum},
      {0x20, nullptr, &QM_FontSpecifier::outlineFileSize},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attribute);
    QM_FontSpecifier a;
    QM_FontSpecifier b;
    const auto expect = [&](std::uint32_t matching, std::uint32_t differing) {
      EXPECT_EQ(a.MatchingAttributes(b), matching);
      EXPECT_EQ(a.DifferingAttributes(b), differing);
    };
    const auto set = [&](QM_FontSpecifier& face, int value) {  // 1 and 2 differ in case alone
      const char* const texts[] = {"", "Arial", "ARIAL", "Times"};
      if (row.text) face.*row.text = texts[value];
      if (row.number) face.*row.number = static_cast<std::uint32_t>(value);
    };
    a.attributes = row.attribute;
    b.attributes = ~row.attribute;
    expect(0, 0);
    b.attributes = row.attribute;
    expect(row.text ? row.attribute : 0, 0);  // empty strings match, zeros do not
    set(a, 1);
    expect(0, 0);
    set(b, 1);
    expect(row.attribute, 0);
    set(b, 2);
    expect(row.text ? row.attribute : 0, row.attribute);
    set(b, 3);
    expect(0, row.attribute);
  }
}

TEST(Match, ChecksPointersThenClearsThenChecksIndexes) {
  const QM_FontArray a = ArrayOf(NamedFace("A"));
  std::uint32_t matching = 5;
  std::uint32_t differing = 6;
  EXPECT_EQ(QM_Match(&a, 0, nullptr, 0, &matching, &differing), 1);
  EXPECT_EQ(matching + differing, 11u);
  EXPECT_EQ(QM_Match(&a, 0, &a, 1, &matching, &differing), 4);
  EXPECT_EQ(matching | differing, 0u);
  EXPECT_EQ(QM_Match(&a, 0, &a, 0, &matching, &differing), 0);
  EXPECT_EQ(matching, 0x300Fu);  // what is empty on both sides, too
}

}  // namespace
}  // namespace quillmark
