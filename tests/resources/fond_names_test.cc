#include "resources/opened_file.h"

namespace quillmark {
namespace {

constexpr ResType kFont = FourCharCode("FONT");

TEST(FondNames, AreDecodedAsMacRomanUnlessTheFamilyIsJapanese) {
  const std::string kanji = "\x96\xBE";  // one character in MacJapanese, two in MacRoman
  struct Row {
    const char* what;
    FondBuilder fond;
    std::string stored;
    ResType type;  // of a resource with ID 5
    std::string data, expected;
  };
  const FondBuilder two_bytes(16384);
  const auto with = [](FondBuilder fond, std::int16_t size, std::int16_t id) {
    return fond.Association(size, 0, id);
  };
  const FondBuilder mapped = FondBuilder(16384).StyleString("X-Y-Z");
  const Row rows[] = {
      {"single-byte", with(FondBuilder(128).StyleString("X"), 0, 5), kanji, kSfnt, "typ1 ", "ñæ"},
      {"no entries, no style table", two_bytes, kanji, kSfnt, "typ1 ", "ñæ"},
      {"no entries, style table", mapped, kanji, kSfnt, "typ1 ", "明"},
      {"outline missing", with(mapped, 0, 6), kanji, kSfnt, "typ1 ", "ñæ"},
      {"outline of 4 bytes keeps the flag", with(mapped, 0, 5), kanji, kSfnt, "OTTO", "明"},
      {"typ1", with(two_bytes, 0, 5), kanji, kSfnt, "typ1 ", "明"},
      {"TrueType clears the flag", with(mapped, 0, 5), kanji, kSfnt, "true ", "ñæ"},
      {"A-CID", with(two_bytes, 0, 5), "A-CID" + kanji, kSfnt, "true ", "A-CID明"},
      {"CID-B", with(two_bytes, 0, 5), kanji + "CID-B", kSfnt, "true ", "明CID-B"},
      {"a second bitmap has a FONT", with(with(mapped, 9, 4), 9, 5), kanji, kFont, "x", "ñæ"},
      {"no bitmap has one", with(mapped, 9, 5), kanji, kNfnt, "x", "明"},
      {"first size counts for an outline", with(with(mapped, 9, 4), 0, 5), kanji, kSfnt, "true ", "明"},
      {"first size counts for a bitmap", with(with(mapped, 0, 4), 9, 5), kanji, kFont, "x", "ñæ"},
      {"no text", mapped, "cut \x81", kSfnt, "x", "none"},
  };
  for (const Row& row : rows) {
    const OpenedFile file(
        ResourceForkBuilder().Add(kFond, 128, row.fond.Build(), row.stored).Add(row.type, 5, row.data));
    const ResourceHandle fond(file.Fond());
    for (int asked = 0; asked < 2; ++asked) {
      EXPECT_EQ(file->getResourceNameFromFOND(fond.get()).value_or("none"), row.expected) << row.what;
    }
    EXPECT_EQ(file->getResourceNameFromFOND(nullptr), std::nullopt);
  }
}

TEST(FondNames, OldBitmapsAreLookedForAgainAfterRemovalAndForAnotherFamily) {
  const std::string fond = FondBuilder(16384).StyleString("X").Association(9, 0, 5).Build();
  const std::string without = FondBuilder(16384).StyleString("X").Association(9, 0, 6).Build();
  const OpenedFile file(
      ResourceForkBuilder().Add(kFond, 128, fond, "\xFF").Add(kFond, 129, without, "\xFF").Add(kFont, 5, "x"),
      false);
  const ResourceHandle handle(file.Fond());
  const ResourceHandle other(file.Fond(129));
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "ˇ");
  EXPECT_EQ(file->getResourceNameFromFOND(other.get()), "…");
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "ˇ");
  EXPECT_TRUE(file->purgeResource(kFont, 5));
  EXPECT_EQ(file->getResourceNameFromFOND(handle.get()), "…");
}

TEST(FondNames, CorrectMultipleMasterNames) {
  const std::tuple<std::string, bool, const char*, bool> rows[] = {
      {"Times", false, "Given", false},        {"Times", true, "Times", true},
      {"x%MTimes", false, "Times", true},      {"TektonMM_240 RG", false, "Tekton", true},
      {"TekMMObl_240", false, "TekObl", true}, {"TektonMMObl", false, "Tekton", true},
      {"MM%MTekton", false, "Tekton", true},   {"%MMTekton", false, "MTekton", true},
      {"\x8EtMM\x8E_", false, "été", true},    {{"Times\0MM", 8}, false, "Given", false}};
  for (const auto& [stored, flag_before, expected, flag_after] : rows) {
    const OpenedFile file(FondBuilder(128).Build(), stored);
    const ResourceHandle fond(file.Fond());
    bool flag = flag_before;
    EXPECT_EQ(file->normalizePostScriptName("Given", fond.get(), &flag), expected) << stored;
    EXPECT_EQ(flag, flag_after) << stored;
    EXPECT_EQ(file->normalizePostScriptName("Given", fond.get(), nullptr), "Given");
    EXPECT_EQ(file->normalizePostScriptName("Given", nullptr, &flag), "Given");
  }
}

}  // namespace
}  // namespace quillmark
