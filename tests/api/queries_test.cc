#include <gtest/gtest.h>

#include <string>

#include "api/face_builder.h"
#include "builders/sfnt_builder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// Each field has a text or number of its own.
QM_FontSpecifier FullFace() {
  QM_FontSpecifier face = NamedFace("psname");
  face.kind = "kind";
  face.family = "family";
  face.fullName = "full";
  face.windowsFullName = "windows";
  face.displayName = "display";
  face.version = "Version 2.100;PS 2.0";
  face.outlineFileName = "/fonts/Quill.PFB";
  face.platform = "crossplatform";
  face.kerningChecksum = 11;
  face.checksum = 12;
  face.legacyChecksum = 13;
  face.outlineFileSize = 14;
  return face;
}

// Buffer sizes, null arguments and bad indexes are driven by tests/c.
TEST(StringGetters, GiveTheirFieldWhenItsBitIsSet) {
  const struct {
    TextGetter getter;
    std::uint32_t attribute;
    const char* expected;
    std::int32_t not_held = 5;
  } rows[] = {
      {QM_GetKindName, 0x2, "kind"},
      {QM_GetFamilyName, 0x1000, "family"},
      {QM_GetPostScriptName, 0x1, "psname"},
      {QM_GetFullName, 0x10000, "full"},
      {QM_GetDisplayName, 0x8000, "display"},
      {QM_GetPlatform, 0x40000, "crossplatform"},
      {QM_GetPrinterFont, 0x2000, "/fonts/Quill.PFB"},
      {QM_GetWindowsFullName, 0x100000, "windows"},
      {QM_GetVersion, 0x8, "2.100"},
      {QM_GetFoundryName, 0x4, "--"},
      {QM_GetLegacyFoundryName, 0x4, "--"},
      {QM_GetWindowsMMFile, 0x80000, "/fonts/Quill.mmm"},
      {QM_GetWindowsMMFile, 0x2000, "/fonts/Quill.mmm", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attribute);
    QM_FontSpecifier face = FullFace();
    EXPECT_EQ(Ask(row.getter, ArrayOf(face)), row.expected);
    face.attributes &= ~row.attribute;
    EXPECT_EQ(Ask(row.getter, ArrayOf(face)), "status " + std::to_string(row.not_held));
  }
}

TEST(NumberGetters, GiveTheirFieldWhenItsBitIsSet) {
  const struct {
    std::int32_t (*getter)(const QM_FontArray*, std::uint32_t, std::uint32_t*);
    std::uint32_t attribute;
    std::uint32_t expected;
  } rows[] = {{QM_GetKerningChecksum, 0x10, 11},
              {QM_GetQuillmarkChecksum, 0x4000, 12},
              {QM_GetLegacyQuillmarkChecksum, 0x20000, 13},
              {QM_GetOutlineFileSize, 0x20, 14}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attribute);
    QM_FontSpecifier face = FullFace();
    const QM_FontArray full = ArrayOf(face);
    face.attributes &= ~row.attribute;
    const QM_FontArray lacking = ArrayOf(face);
    std::uint32_t value = 99;
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

TEST(WindowsNames, FallBackOrFail) {
  QM_FontSpecifier face = FullFace();
  face.windowsFullName = "";
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "full");
  face.attributes &= ~std::uint32_t{QM_ATTRIBUTE_FULL_NAME};
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "status 5");
  face.outlineFileName = "Quill.pfm";
  EXPECT_EQ(Ask(QM_GetWindowsMMFile, ArrayOf(face)), "status 1");
  face.attributes &= ~(0x80000u | 0x2000u);
  EXPECT_EQ(Ask(QM_GetWindowsMMFile, ArrayOf(face)), "status 5") << "its own bit is looked at first";
}

// Over the tables of the library's own bundle.
TEST(FoundryName, DependsOnPlatformAndCreatorCodes) {
  const std::uint32_t adobe = FourCharCode("ASPF");
  const std::uint32_t tool = FourCharCode("KSet");
  const struct {
    const char* platform;
    const char* foundry;
    std::uint32_t creator, outline_creator;
    const char* name;
    const char* legacy;
  } rows[] = {
      {"crossplatform", "Copyright Monotype", 0, 0, "Monotype", "Monotype"},
      {"mac", "Copyright Monotype", adobe, 0, "Adobe", "Adobe"},
      {"MAC", "Copyright Monotype", 0, adobe, "Adobe", "Adobe"},
      {"crossplatform", "Copyright Monotype", adobe, 0, "Monotype", "Adobe"},  // only the legacy way looks
      {"mac", "Copyright Monotype", adobe, tool, "Monotype", "Monotype"},      // text first beside a tool's
      {"mac", "unheard of", tool, adobe, "Adobe", "Adobe"},
      {"mac", "", tool, 0, "--", "--"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    QM_FontSpecifier face = FullFace();
    face.platform = row.platform;
    face.foundry = row.foundry;
    face.fileCreator = row.creator;
    face.outlineFileCreator = row.outline_creator;
    EXPECT_EQ(Ask(QM_GetFoundryName, ArrayOf(face)), row.name);
    EXPECT_EQ(Ask(QM_GetLegacyFoundryName, ArrayOf(face)), row.legacy);
  }
}

TEST(NamesAlone, TellStylesAndClassWithTheirOddities) {
  char first[16] = "?";
  char third[16] = "?";
  char* buffers[3] = {first, nullptr, third};
  std::uint32_t count = 9;
  EXPECT_EQ(QM_GetStyles("", "", 3, sizeof(first), &count, buffers), 0);
  EXPECT_EQ(count, 9u) << "no style, no count";
  EXPECT_EQ(QM_GetStyles("Quillsans Bold Italic", "", 3, sizeof(first), &count, buffers), 0);
  EXPECT_EQ(std::to_string(count) + first + third, "2Bold?");
  const auto class_of = [](const char* family, const char* alternate) {
    char buffer[32];
    EXPECT_EQ(QM_GetClassificationFromFamily(family, alternate, buffer, sizeof(buffer)), 0);
    return std::string(buffer);
  };
  EXPECT_NE(class_of("Helvetica", nullptr), class_of("Times", nullptr));
  EXPECT_EQ(class_of("Helvetica", "Times"), class_of("Helvetica", nullptr));
  EXPECT_EQ(class_of("No Such Family", "Times"), class_of("Times", nullptr));
}

TEST(NameTableQuery, WritesOnlyAName) {
  const std::string font = SfntBuilder::CrossPlatform().WindowsName(4, u"Quill Sans").Build();
  char buffer[32] = "?";
  char* fond = nullptr;
  int file = 0;  // not followed
  const auto ask = [&](std::size_t length, int* resource_file, std::int32_t size) {
    QM_GetPostScriptNameFromNamesTable(font.data(), static_cast<std::uint32_t>(length), resource_file, &fond,
                                       0, buffer, size);
    return std::string(buffer);
  };
  EXPECT_EQ(ask(20, &file, sizeof(buffer)), "?");
  EXPECT_EQ(ask(font.size(), &file, 0), "?");
  EXPECT_EQ(ask(font.size(), nullptr, sizeof(buffer)), "?");
  EXPECT_EQ(ask(font.size(), &file, sizeof(buffer)), "Quill-Sans");
}

}  // namespace
}  // namespace quillmark
