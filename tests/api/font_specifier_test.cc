#include "api/font_specifier.h"

#include <gtest/gtest.h>

#include "api/face_builder.h"
#include "api/match.h"

namespace quillmark {
namespace {

TEST(FontSpecifier, StartsEmpty) {
  const QM_FontSpecifier face;
  EXPECT_EQ(face.style, -1);
  EXPECT_EQ(face.firstResourceID, -1);
  EXPECT_EQ(face.fondResourceID, -1);
  EXPECT_EQ(face.kerningChecksum | face.checksum | face.legacyChecksum | face.outlineFileSize, 0u);
  EXPECT_EQ(face.fileCreator | face.fileType | face.outlineFileCreator | face.outlineFileType, 0u);
  EXPECT_EQ(face.attributes, 0u);
}

TEST(FontSpecifier, ComparesEachAttributeOnItsOwn) {
  struct Row {
    const char* what;
    OmString QM_FontSpecifier::*text;
    std::uint32_t QM_FontSpecifier::*number;
    std::uint32_t attribute;
  };
  const Row rows[] = {
      {"kind", &QM_FontSpecifier::kind, nullptr, 0x2},
      {"family", &QM_FontSpecifier::family, nullptr, 0x1000},
      {"PostScript name", &QM_FontSpecifier::postScriptName, nullptr, 0x1},
      {"foundry", &QM_FontSpecifier::foundry, nullptr, 0x4},
      {"version", &QM_FontSpecifier::version, nullptr, 0x8},
      {"outline file name", &QM_FontSpecifier::outlineFileName, nullptr, 0x2000},
      {"kerning checksum", nullptr, &QM_FontSpecifier::kerningChecksum, 0x10},
      {"outline file size", nullptr, &QM_FontSpecifier::outlineFileSize, 0x20},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    QM_FontSpecifier a;
    QM_FontSpecifier b;
    const auto expect = [&](std::uint32_t matching, std::uint32_t differing) {
      EXPECT_EQ(a.MatchingAttributes(b), matching);
      EXPECT_EQ(a.DifferingAttributes(b), differing);
      EXPECT_EQ(b.MatchingAttributes(a), matching);
      EXPECT_EQ(b.DifferingAttributes(a), differing);
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
  QM_FontArray array;
  array.push_back(NamedFace("A"));
  QM_FontArray other;
  other.push_back(NamedFace("B"));
  std::uint32_t matching = 5;
  std::uint32_t differing = 6;
  EXPECT_EQ(QM_Match(nullptr, 0, &other, 0, &matching, &differing), 1);
  EXPECT_EQ(QM_Match(&array, 0, nullptr, 0, &matching, &differing), 1);
  EXPECT_EQ(QM_Match(&array, 0, &other, 0, nullptr, &differing), 1);
  EXPECT_EQ(QM_Match(&array, 0, &other, 0, &matching, nullptr), 1);
  EXPECT_EQ(matching, 5u);
  EXPECT_EQ(differing, 6u);
  EXPECT_EQ(QM_Match(&array, 0, &other, 0, &matching, &differing), 0);
  EXPECT_EQ(matching, 0x300Eu);  // what is empty on both sides
  EXPECT_EQ(differing, 0x1u);
  EXPECT_EQ(QM_Match(&array, 1, &other, 0, &matching, &differing), 4);
  EXPECT_EQ(matching | differing, 0u);
  EXPECT_EQ(QM_Match(&array, 0, &other, 0xFFFFFFFF, &matching, &differing), 4);
}

}  // namespace
}  // namespace quillmark
