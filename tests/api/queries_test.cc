#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "api/face_builder.h"
#include "builders/sfnt_builder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// Each field has a text or number of its own.
QM_FontSpecifier FullFace() {
  QM_FontSpecifier face;
  face.kind = "kind";
  face.family = "family";
  face.postScriptName = "psname";
  face.fullName = "full";
  face.windowsFullName = "windows";
  face.displayName = "display";
  face.foundry = "no maker";
  face.version = "Version 2.100;PS 2.0";
  face.outlineFileName = "/fonts/Quill.PFB";
  face.platform = "crossplatform";
  face.kerningChecksum = 11;
  face.checksum = 12;
  face.legacyChecksum = 13;
  face.outlineFileSize = 14;
  face.attributes = QM_ATTRIBUTES_ALL;
  return face;
}

QM_FontArray ArrayOf(const QM_FontSpecifier& face) {
  QM_FontArray array;
  array.push_back(face);
  return array;
}

// Buffer sizes and null arguments are driven by tests/c/contract.c.
TEST(StringGetters, GiveTheirFieldWhenItsBitIsSet) {
  const struct {
    const char* name;
    StringGetter getter;
    std::uint32_t attribute;
    const char* expected;
    std::int32_t not_held = 5;
  } rows[] = {
      {"kind", QM_GetKindName, 0x2, "kind"},
      {"family", QM_GetFamilyName, 0x1000, "family"},
      {"PostScript name", QM_GetPostScriptName, 0x1, "psname"},
      {"full name", QM_GetFullName, 0x10000, "full"},
      {"display name", QM_GetDisplayName, 0x8000, "display"},
      {"platform", QM_GetPlatform, 0x40000, "crossplatform"},
      {"printer font", QM_GetPrinterFont, 0x2000, "/fonts/Quill.PFB"},
      {"Windows full name", QM_GetWindowsFullName, 0x100000, "windows"},
      {"version", QM_GetVersion, 0x8, "2.100"},
      {"foundry", QM_GetFoundryName, 0x4, "--"},
      {"legacy foundry", QM_GetLegacyFoundryName, 0x4, "--"},
      {"multiple master file", QM_GetWindowsMMFile, 0x80000, "/fonts/Quill.mmm"},
      {"its outline file name", QM_GetWindowsMMFile, 0x2000, "/fonts/Quill.mmm", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    QM_FontSpecifier face = FullFace();
    EXPECT_EQ(Ask(row.getter, ArrayOf(face)), row.expected);
    face.attributes &= ~row.attribute;
    EXPECT_EQ(Ask(row.getter, ArrayOf(face)), "status " + std::to_string(row.not_held));
  }
}

TEST(StringGetters, AnswerABadIndexEachInItsWay) {
  const QM_FontArray array = ArrayOf(FullFace());
  for (const StringGetter getter :
       {QM_GetPostScriptName, QM_GetFullName, QM_GetDisplayName, QM_GetPlatform, QM_GetPrinterFont,
        QM_GetWindowsFullName, QM_GetVersion, QM_GetFoundryName, QM_GetLegacyFoundryName}) {
    EXPECT_EQ(Ask(getter, array, 1), "status 4");
    EXPECT_EQ(Ask(getter, array, 0xFFFFFFFF), "status 4");
  }
  EXPECT_EQ(Ask(QM_GetWindowsMMFile, array, 1), "status 1");
  EXPECT_THROW(Ask(QM_GetKindName, array, 1), std::out_of_range);
  EXPECT_THROW(Ask(QM_GetFamilyName, array, 0xFFFFFFFF), std::out_of_range);
  EXPECT_EQ(QM_GetKindName(&array, 1, nullptr, 10), 1) << "null comes before the index";
}

TEST(NumberGetters, GiveTheirFieldWhenItsBitIsSet) {
  const struct {
    const char* name;
    std::int32_t (*getter)(const QM_FontArray*, std::uint32_t, std::uint32_t*);
    std::uint32_t attribute;
    std::uint32_t expected;
  } rows[] = {{"kerning", QM_GetKerningChecksum, 0x10, 11},
              {"checksum", QM_GetQuillmarkChecksum, 0x4000, 12},
              {"legacy", QM_GetLegacyQuillmarkChecksum, 0x20000, 13},
              {"size", QM_GetOutlineFileSize, 0x20, 14}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    QM_FontSpecifier face = FullFace();
    std::uint32_t value = 99;
    EXPECT_EQ(row.getter(nullptr, 0, &value), 1);
    const QM_FontArray full = ArrayOf(face);
    EXPECT_EQ(row.getter(&full, 1, &value), 4);
    face.attributes &= ~row.attribute;
    const QM_FontArray lacking = ArrayOf(face);
    EXPECT_EQ(row.getter(&lacking, 0, &value), 5);
    EXPECT_EQ(value, 99u);
    EXPECT_EQ(row.getter(&full, 0, &value), 0);
    EXPECT_EQ(value, row.expected);
  }
}

TEST(Version, IsTheNumberInTheText) {
  const std::pair<const char*, const char*> rows[] = {
      {"Version 2.100;PS 2.0", "2.100"},
      {"Version 1.00 2004", "1.00"},
      {"Regular", ""},
      {"", ""},
      {"v.-3-beta 4", "3-"},
      {"001.002", "001.002"},
      {"7", "7"},
  };
  for (const auto& [text, expected] : rows) {
    QM_FontSpecifier face = FullFace();
    face.version = text;
    EXPECT_EQ(Ask(QM_GetVersion, ArrayOf(face)), expected) << text;
  }
}

TEST(WindowsFullName, FallsBackToTheFullName) {
  QM_FontSpecifier face = FullFace();
  face.windowsFullName = "";
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "full");
  face.attributes = QM_ATTRIBUTE_WINDOWS_FULL_NAME;
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "status 5");
}

TEST(WindowsMMFile, FailsForAnyOtherFileName) {
  QM_FontSpecifier face = FullFace();
  face.outlineFileName = "Quill.pfm";
  EXPECT_EQ(Ask(QM_GetWindowsMMFile, ArrayOf(face)), "status 1");
  face.attributes &= ~(0x80000u | 0x2000u);
  EXPECT_EQ(Ask(QM_GetWindowsMMFile, ArrayOf(face)), "status 5") << "its own bit is looked at first";
}

// Over the tables of the library's own bundle.
TEST(FoundryName, DependsOnPlatformAndCreatorCodes) {
  constexpr std::uint32_t kNone = 0;
  const std::uint32_t adobe = FourCharCode("ASPF");
  const std::uint32_t tool = FourCharCode("KSet");
  const struct {
    const char* what;
    const char* platform;
    const char* foundry;
    std::uint32_t creator1, creator2;
    const char* name;
    const char* legacy;
  } rows[] = {
      {"text alone", "crossplatform", "Copyright Monotype", kNone, kNone, "Monotype", "Monotype"},
      {"codes count on the Mac", "mac", "Copyright Monotype", adobe, kNone, "Adobe", "Adobe"},
      {"whatever its case", "MAC", "Copyright Monotype", kNone, adobe, "Adobe", "Adobe"},
      {"codes do not count elsewhere", "crossplatform", "Copyright Monotype", adobe, kNone, "Monotype",
       "Adobe"},
      {"text before codes beside a tool's", "mac", "Copyright Monotype", adobe, tool, "Monotype", "Monotype"},
      {"codes after an unknown text", "mac", "unheard of", tool, adobe, "Adobe", "Adobe"},
      {"nothing known", "mac", "", tool, kNone, "--", "--"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    QM_FontSpecifier face = FullFace();
    face.platform = row.platform;
    face.foundry = row.foundry;
    face.fileCreator = row.creator1;
    face.outlineFileCreator = row.creator2;
    EXPECT_EQ(Ask(QM_GetFoundryName, ArrayOf(face)), row.name);
    EXPECT_EQ(Ask(QM_GetLegacyFoundryName, ArrayOf(face)), row.legacy);
  }
}

TEST(Styles, FillsAsManyBuffersAsAreWantedAndThere) {
  char first[16] = "?";
  char third[16] = "?";
  char* buffers[3] = {first, nullptr, third};
  std::uint32_t count = 9;
  EXPECT_EQ(QM_GetStyles("Quillsans Bold Italic", "", 3, sizeof(first), &count, buffers), 0);
  EXPECT_EQ(count, 2u);
  EXPECT_STREQ(first, "Bold");
  EXPECT_STREQ(third, "?");
  EXPECT_EQ(QM_GetStyles("Quillsans Bold Italic", "", 1, 3, &count, buffers), 0);
  EXPECT_EQ(count, 1u);
  EXPECT_STREQ(first, "Bo");
  count = 9;
  EXPECT_EQ(QM_GetStyles("", "", 3, sizeof(first), &count, buffers), 0);
  EXPECT_EQ(count, 9u) << "no style, no count";
  buffers[0] = nullptr;
  EXPECT_EQ(QM_GetStyles("Bold", "", 3, sizeof(first), &count, buffers), 1);
}

TEST(Classification, AsksForTheAlternateOnlyWithoutAClass) {
  char buffer[32];
  const auto ask = [&buffer](const char* family, const char* alternate) {
    EXPECT_EQ(QM_GetClassificationFromFamily(family, alternate, buffer, sizeof(buffer)), 0);
    return std::string(buffer);
  };
  const std::string helvetica = ask("Helvetica", nullptr);
  const std::string times = ask("Times", nullptr);
  EXPECT_NE(helvetica, "--");
  EXPECT_NE(helvetica, times);
  EXPECT_EQ(ask("Helvetica", "Times"), helvetica);
  EXPECT_EQ(ask("No Such Family", "Times"), times);
  EXPECT_EQ(ask("No Such Family", "Nor This"), "--");
  EXPECT_EQ(ask("No Such Family", nullptr), "--");
}

TEST(NameTableQuery, WritesOnlyAName) {
  const std::string font = SfntBuilder::CrossPlatform().WindowsName(4, u"Quill Sans").Build();
  const std::string nameless = SfntBuilder::CrossPlatform().Build();
  char buffer[32] = "?";
  char* fond = nullptr;
  int not_followed = 0;
  const auto ask = [&](const std::string& bytes, std::int32_t size) {
    QM_GetPostScriptNameFromNamesTable(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &not_followed,
                                       &fond, 0, buffer, size);
  };
  ask(nameless, sizeof(buffer));
  ask(font, 0);
  QM_GetPostScriptNameFromNamesTable(font.data(), static_cast<std::uint32_t>(font.size()), nullptr, &fond, 0,
                                     buffer, sizeof(buffer));
  EXPECT_STREQ(buffer, "?");
  ask(font, sizeof(buffer));
  EXPECT_STREQ(buffer, "Quill-Sans");
}

}  // namespace
}  // namespace quillmark
