// What faces made by hand give when they are asked, compared, and freed of duplicates; and names without a
// face.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "api/face_builder.h"
#include "api/match.h"
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
  const char* const known = "Copyright Monotype";
  // Platform, text, creators of the font file and the outline file, and the name by each way.
  for (const auto& [platform, foundry, creator, outline_creator, name, legacy] :
       {std::tuple("crossplatform", known, 0u, 0u, "Monotype", "Monotype"),
        {"mac", known, adobe, 0, "Adobe", "Adobe"},
        {"MAC", known, 0, adobe, "Adobe", "Adobe"},
        {"crossplatform", known, adobe, 0, "Monotype", "Adobe"},  // only the legacy way looks
        {"mac", known, adobe, tool, "Monotype", "Monotype"},      // text first beside a tool's
        {"mac", "unheard of", tool, adobe, "Adobe", "Adobe"},
        {"mac", "", tool, 0, "--", "--"}}) {
    QM_FontSpecifier face = NamedFace("A");
    face.platform = platform;
    face.foundry = foundry;
    face.fileCreator = creator;
    face.outlineFileCreator = outline_creator;
    EXPECT_EQ(Ask(QM_GetFoundryName, ArrayOf(face)), name) << platform << foundry << creator;
    EXPECT_EQ(Ask(QM_GetLegacyFoundryName, ArrayOf(face)), legacy) << platform << foundry << creator;
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

TEST(Match, ComparesWhatBothHold) {
  using Bits = std::pair<std::uint32_t, std::uint32_t>;  // of the attributes that match and that differ
  const auto match = [](const QM_FontSpecifier& a, const QM_FontSpecifier& b) {
    const QM_FontArray one = ArrayOf(a);
    const QM_FontArray other = ArrayOf(b);
    Bits bits = {5, 6};
    EXPECT_EQ(QM_Match(&one, 0, nullptr, 0, &bits.first, &bits.second), 1);
    EXPECT_EQ(bits, Bits(5, 6));
    EXPECT_EQ(QM_Match(&one, 0, &other, 1, &bits.first, &bits.second), 4);
    EXPECT_EQ(bits, Bits(0, 0));
    EXPECT_EQ(QM_Match(&one, 0, &other, 0, &bits.first, &bits.second), 0);
    return bits;
  };
  const QM_FontSpecifier face = StoredFace();
  EXPECT_EQ(match(face, face), Bits(0x303F, 0));
  QM_FontSpecifier other = face;
  other.kind = "TRUETYPE";  // differs in case alone: both
  other.family = other.foundry = "";
  other.version = "Version 2";
  other.kerningChecksum = 1;
  other.outlineFileSize = 0;
  EXPECT_EQ(match(face, other), Bits(0x2003, 0x1A));
  EXPECT_EQ(match(other, face), match(face, other));
  EXPECT_EQ(match(other, other), Bits(0x301F, 0)) << "empty texts match, zeros do not";
  other.attributes = 0;
  EXPECT_EQ(match(face, other), Bits(0, 0));
}

// Faces as words: a letter for the name, a digit for the style and one for the first resource ID.
std::string Kept(const std::string& words) {
  QM_FontArray array;
  std::istringstream in(words);
  for (std::string word; in >> word;) {
    QM_FontSpecifier face = NamedFace(word.substr(0, 1).c_str());
    face.style = word[1] - '0';
    face.firstResourceID = word[2] - '0';
    face.family = word.c_str();
    array.push_back(face);
  }
  array.RemoveDups();
  std::string kept;
  for (std::size_t i = 0; i < array.size(); ++i) kept += (i == 0 ? "" : " ") + array.view(i).family.str();
  return kept;
}

TEST(Duplicates, LeaveTheFirstOfTheLowestStyle) {
  for (const auto& [faces, kept] :
       {std::pair("", ""),
        {"A20 A21 B20", "A20 B20"},  // the first, unless a later style is lower
        {"A20 A10 A11 A12", "A11"},  // and has a resource ID
        {"B20 A20 A11 B31 A01 B11", "B11 A01"},
        {"A20 a11", "a11 a11"},  // a spelling is a name, which case does not tell apart
        {"A20 a11 A02 a01", "A02 A02"},
        {"A01 a20 A20", "A01 a20"}}) {
    EXPECT_EQ(Kept(faces), kept) << faces;
  }
}

}  // namespace
}  // namespace quillmark
