#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "api/face_builder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// Buffer sizes, null arguments and bad indexes are driven by tests/c.
TEST(Getters, GiveTheirFieldWhenItsBitIsSet) {
  QM_FontSpecifier full = StoredFace();
  full.fullName = "full";
  full.windowsFullName = "windows";
  full.displayName = "display";
  full.outlineFileName = "/fonts/Quill.PFB";
  full.platform = "crossplatform";
  full.legacyChecksum = 13;
  const auto check = [&](auto getter, std::uint32_t attribute, const char* expected,
                         const char* not_held = "status 5") {
    SCOPED_TRACE(attribute);
    QM_FontSpecifier face = full;
    EXPECT_EQ(Ask(getter, ArrayOf(face)), expected);
    face.attributes &= ~attribute;
    EXPECT_EQ(Ask(getter, ArrayOf(face)), not_held);
  };
  check(QM_GetKindName, 0x2, "TrueType");
  check(QM_GetFamilyName, 0x1000, "Quill <&> Sans");
  check(QM_GetPostScriptName, 0x1, "Quill\x01");
  check(QM_GetFullName, 0x10000, "full");
  check(QM_GetDisplayName, 0x8000, "display");
  check(QM_GetPlatform, 0x40000, "crossplatform");
  check(QM_GetPrinterFont, 0x2000, "/fonts/Quill.PFB");
  check(QM_GetWindowsFullName, 0x100000, "windows");
  check(QM_GetVersion, 0x8, "1.5");
  check(QM_GetFoundryName, 0x4, "--");
  check(QM_GetLegacyFoundryName, 0x4, "--");
  check(QM_GetWindowsMMFile, 0x80000, "/fonts/Quill.mmm");
  check(QM_GetWindowsMMFile, 0x2000, "/fonts/Quill.mmm", "status 1");
  check(QM_GetWindowsMMFile, 0x82000, "/fonts/Quill.mmm");  // its own bit is looked at first
  check(QM_GetKerningChecksum, 0x10, "439041101");
  check(QM_GetQuillmarkChecksum, 0x4000, "2748");
  check(QM_GetLegacyQuillmarkChecksum, 0x20000, "13");
  check(QM_GetOutlineFileSize, 0x20, "4294967294");
  full.windowsFullName = "";
  check(QM_GetWindowsFullName, 0x10000, "full");
  full.outlineFileName = "Quill.pfm";
  check(QM_GetWindowsMMFile, 0x80000, "status 1");
}

TEST(Version, IsTheNumberInTheText) {
  QM_FontSpecifier face = NamedFace("A");
  for (const auto& [text, expected] : {std::pair("Version 2.100;PS 2.0", "2.100"),
                                       {"Version 1.00 2004", "1.00"},
                                       {"Regular", ""},
                                       {"v.-3-beta 4", "3-"},
                                       {"7", "7"}}) {
    face.version = text;
    EXPECT_EQ(Ask(QM_GetVersion, ArrayOf(face)), expected) << text;
  }
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
    QM_FontSpecifier face = NamedFace("A");
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

}  // namespace
}  // namespace quillmark
