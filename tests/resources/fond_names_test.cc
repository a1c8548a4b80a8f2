#include <gtest/gtest.h>

#include "builders/fond_builder.h"
#include "resources/opened_file.h"

namespace quillmark {
namespace {

constexpr ResType kFont = FourCharCode("FONT");

TEST(FondNames, AreDecodedAsMacRomanUnlessTheFamilyIsJapanese) {
  const std::string kanji = "\x96\xBE";  // one character in MacJapanese, two in MacRoman
  const std::string as_japanese = "明";
  const std::string as_roman = "ñæ";
  struct Row {
    const char* what;
    FondBuilder fond;
    std::string stored;
    ResType type;  // of a resource with ID 5
    std::string data;
    std::string expected;
  };
  const auto single = [] { return FondBuilder(128); };
  const auto two_bytes = [] { return FondBuilder(16384); };
  const auto mapped = [&] { return two_bytes().StyleString("X-Y-Z"); };
  const Row rows[] = {
      {"single-byte family", single().StyleString("X").Association(0, 0, 5), kanji, kSfnt, "typ1 ", as_roman},
      {"no entries, no style table", two_bytes(), kanji, kSfnt, "typ1 ", as_roman},
      {"no entries, style table", mapped(), kanji, kSfnt, "typ1 ", as_japanese},
      {"outline missing", mapped().Association(0, 0, 6), kanji, kSfnt, "typ1 ", as_roman},
      {"outline of 4 bytes keeps the flag", mapped().Association(0, 0, 5), kanji, kSfnt, "OTTO", as_japanese},
      {"outline of 4 bytes keeps it off", two_bytes().Association(0, 0, 5), kanji, kSfnt, "typ1", as_roman},
      {"typ1", two_bytes().Association(0, 0, 5), kanji, kSfnt, "typ1 ", as_japanese},
      {"TrueType clears the flag", mapped().Association(0, 0, 5), kanji, kSfnt, "true ", as_roman},
      {"A-CID", two_bytes().Association(0, 0, 5), "A-CID" + kanji, kSfnt, "true ", "A-CID" + as_japanese},
      {"CID-B", two_bytes().Association(0, 0, 5), kanji + "CID-B", kSfnt, "true ", as_japanese + "CID-B"},
      {"CID-B in the middle", two_bytes().Association(0, 0, 5), "CID-B" + kanji, kSfnt, "true ",
       "CID-B" + as_roman},
      {"bitmap with a FONT", mapped().Association(9, 0, 4).Association(9, 1, 5), kanji, kFont, "x", as_roman},
      {"bitmap without one", mapped().Association(9, 0, 5), kanji, kNfnt, "x", as_japanese},
      {"first size counts for an outline behind it", mapped().Association(9, 0, 4).Association(0, 1, 5),
       kanji, kSfnt, "true ", as_japanese},
      {"first size counts for a bitmap behind it", mapped().Association(0, 0, 4).Association(9, 1, 5), kanji,
       kFont, "x", as_roman},
  };
  for (const Row& row : rows) {
    const OpenedFile file(
        ResourceForkBuilder().Add(kFond, 128, row.fond.Build(), row.stored).Add(row.type, 5, row.data));
    const ResourceHandle fond(file.Fond());
    for (int asked = 0; asked < 2; ++asked) {
      EXPECT_EQ(file->getResourceNameFromFOND(fond.get()), row.expected) << row.what;
    }
  }
}

TEST(FondNames, AreNothingWhenTheyCannotBeHad) {
  const OpenedFile file(FondBuilder(16384).StyleString("X").Build(), "cut \x81");
  const ResourceHandle fond(file.Fond());
  EXPECT_EQ(file->getResourceNameFromFOND(fond.get()), std::nullopt);
  EXPECT_EQ(file->getResourceNameFromFOND(nullptr), std::nullopt);
}

TEST(FondNames, OldBitmapsAreLookedForAgainAfterRemoval) {
  const std::string fond = FondBuilder(16384).StyleString("X").Association(9, 0, 5).Build();
  const std::string without = FondBuilder(16384).StyleString("X").Association(9, 0, 6).Build();
  const OpenedFile file(
      ResourceForkBuilder().Add(kFond, 128, fond, "\xFF").Add(kFond, 129, without, "\xFF").Add(kFont, 5, "x"),
      false);
  const ResourceHandle handle(file.Fond());
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "ˇ");
  const ResourceHandle other(file.Fond(129));  // names no FONT, and asking about it does not confuse them
  EXPECT_EQ(file->getResourceNameFromFOND(other.get()), "…");
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "ˇ");
  EXPECT_TRUE(file->purgeResource(kFont, 5));
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "…");
}

TEST(FondNames, CorrectMultipleMasterNames) {
  struct Row {
    std::string stored;
    bool flag_before;
    std::string expected;
    bool flag;
  };
  const Row rows[] = {
      {"Times", false, "Given", false},
      {"Times", true, "Times", true},
      {"", true, "", true},
      {"%MTimes", false, "Times", true},
      {"x%MTimes", false, "Times", true},
      {"TektonMM_240 RG", false, "Tekton", true},
      {"TektonMMObl_240", false, "TektonObl", true},
      {"TektonMM", false, "Tekton", true},
      {"TektonMMObl", false, "Tekton", true},
      {"%MTektonMM_1", false, "Tekton", true},
      {"MM%MTekton", false, "Tekton", true},
      {"%MMTekton", false, "MTekton", true},
      {"\x8EtMM\x8E_", false, "été", true},
      {std::string("Times\0MM", 8), false, "Given", false},
      {"timesmm", false, "Given", false},
  };
  for (const Row& row : rows) {
    const OpenedFile file(FondBuilder(128).Build(), row.stored);
    const ResourceHandle fond(file.Fond());
    bool flag = row.flag_before;
    EXPECT_EQ(file->normalizePostScriptName("Given", fond.get(), &flag), row.expected) << row.stored;
    EXPECT_EQ(flag, row.flag) << row.stored;
    EXPECT_EQ(file->normalizePostScriptName("Given", fond.get(), nullptr), "Given");
    EXPECT_EQ(file->normalizePostScriptName("Given", nullptr, &flag), "Given");
  }
}

}  // namespace
}  // namespace quillmark
