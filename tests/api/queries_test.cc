#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "api/face_builder.h"
#include "builders/sfnt_builder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

QM_FontArray ArrayOf(const QM_FontSpecifier& face) {
  QM_FontArray array;
  array.push_back(face);
  return array;
}

TEST(Version, IsTheNumberInTheText) {
  const std::pair<const char*, const char*> rows[] = {
      {"Version 1.00 2004", "1.00"},
      {"Regular", ""},
      {"v.-3-beta 4", "3-"},
      {"7", "7"},
  };
  for (const auto& [text, expected] : rows) {
    QM_FontSpecifier face = NamedFace("A");
    face.version = text;
    EXPECT_EQ(Ask(QM_GetVersion, ArrayOf(face)), expected) << text;
  }
}

TEST(WindowsNames, FallBackOrFail) {
  QM_FontSpecifier face = NamedFace("A");
  face.fullName = "full";
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "full");
  face.attributes &= ~std::uint32_t{QM_ATTRIBUTE_FULL_NAME};
  EXPECT_EQ(Ask(QM_GetWindowsFullName, ArrayOf(face)), "status 5");
  for (const auto& [name, expected] : {std::pair{"/a/Quill.PFB", "/a/Quill.mmm"},
                                       {"ab.pfb", "ab.mmm"},
                                       {"a.pfb", "status 1"},
                                       {"abcpfb", "status 1"},
                                       {"Quill.pfm", "status 1"}}) {
    face.outlineFileName = name;
    EXPECT_EQ(Ask(QM_GetWindowsMMFile, ArrayOf(face)), expected);
  }
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
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    QM_FontSpecifier face = NamedFace("A");
    face.platform = row.platform;
    face.foundry = row.foundry;
    face.fileCreator = row.creator;
    face.outlineFileCreator = row.outline_creator;
    EXPECT_EQ(Ask(QM_GetFoundryName, ArrayOf(face)), row.name);
    EXPECT_EQ(Ask(QM_GetLegacyFoundryName, ArrayOf(face)), row.legacy);
  }
}

TEST(NameTableQuery, WritesOnlyAName) {
  const std::string font = SfntBuilder::CrossPlatform().WindowsName(4, u"Quill Sans").Build();
  char buffer[32] = "?";
  char* fond = nullptr;
  int file = 0;  // not followed
  for (const auto& [length, expected] : {std::pair{std::size_t{20}, "?"}, {font.size(), "Quill-Sans"}}) {
    QM_GetPostScriptNameFromNamesTable(font.data(), static_cast<std::uint32_t>(length), &file, &fond, 0,
                                       buffer, sizeof(buffer));
    EXPECT_STREQ(buffer, expected);
  }
}

}  // namespace
}  // namespace quillmark
