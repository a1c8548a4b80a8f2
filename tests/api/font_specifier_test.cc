#include "api/font_specifier.h"

#include <gtest/gtest.h>

#include "api/face_builder.h"
#include "api/match.h"

namespace quillmark {
namespace {

// The attributes that match and those that differ, or the status.
std::pair<std::uint32_t, std::uint32_t> Match(const QM_FontSpecifier& a, const QM_FontSpecifier& b) {
  const QM_FontArray one = ArrayOf(a);
  const QM_FontArray other = ArrayOf(b);
  std::uint32_t matching = 5;
  std::uint32_t differing = 6;
  EXPECT_EQ(QM_Match(&one, 0, nullptr, 0, &matching, &differing), 1);
  EXPECT_EQ(matching + differing, 11u) << "pointers are checked, the numbers cleared, then indexes checked";
  EXPECT_EQ(QM_Match(&one, 0, &other, 1, &matching, &differing), 4);
  EXPECT_EQ(matching | differing, 0u);
  EXPECT_EQ(QM_Match(&one, 0, &other, 0, &matching, &differing), 0);
  return {matching, differing};
}

TEST(Match, ComparesEachAttributeOnItsOwn) {
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
  for (const auto& [bit, text, number] : rows) {
    SCOPED_TRACE(bit);
    QM_FontSpecifier faces[4];
    for (std::uint32_t i = 0; i < 4; ++i) {
      const char* const texts[] = {"", "Arial", "ARIAL", "Times"};
      faces[i].attributes = bit;
      if (text) faces[i].*text = texts[i];
      if (number) faces[i].*number = i;
    }
    using Bits = std::pair<std::uint32_t, std::uint32_t>;
    const std::uint32_t text_bit = text ? bit : 0;
    EXPECT_EQ(Match(faces[0], faces[0]), Bits(text_bit, 0)) << "empty strings match, zeros do not";
    EXPECT_EQ(Match(faces[1], faces[0]), Bits(0, 0));
    EXPECT_EQ(Match(faces[1], faces[1]), Bits(bit, 0));
    EXPECT_EQ(Match(faces[1], faces[2]), Bits(text_bit, bit)) << "strings in case alone";
    EXPECT_EQ(Match(faces[1], faces[3]), Bits(0, bit));
    faces[1].attributes = ~bit;
    EXPECT_EQ(Match(faces[1], faces[1]).first & bit, 0u);
    EXPECT_EQ(Match(faces[1], faces[3]), Bits(0, 0));
  }
}

}  // namespace
}  // namespace quillmark
