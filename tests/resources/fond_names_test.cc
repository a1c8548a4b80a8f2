#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

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
    const OpenedSuitcase file(
        ResourceForkBuilder().Add(kFond, 128, row.fond.Build(), row.stored).Add(row.type, 5, row.data));
    Family family(file.get(), file.Fond());
    EXPECT_EQ(family.getResourceNameFromFOND().value_or("none"), row.expected) << row.what;
  }
}

TEST(FondNames, CorrectMultipleMasterNames) {
  const std::tuple<std::string, bool, const char*, bool> rows[] = {
      {"Times", false, "Given", false},        {"Times", true, "Times", true},
      {"x%MTimes", false, "Times", true},      {"TektonMM_240 RG", false, "Tekton", true},
      {"TekMMObl_240", false, "TekObl", true}, {"TektonMMObl", false, "Tekton", true},
      {"MM%MTekton", false, "Tekton", true},   {"%MMTekton", false, "MTekton", true},
      {"\x8EtMM\x8E_", false, "été", true},    {{"Times\0MM", 8}, false, "Given", false}};
  for (const auto& [stored, flag_before, expected, flag_after] : rows) {
    const OpenedSuitcase file(FondBuilder(128).Build(), stored);
    const Family family(file.get(), file.Fond());
    bool flag = flag_before;
    EXPECT_EQ(family.normalizePostScriptName("Given", &flag), expected) << stored;
    EXPECT_EQ(flag, flag_after) << stored;
    EXPECT_EQ(family.normalizePostScriptName("Given", nullptr), "Given");
  }
}

}  // namespace
}  // namespace quillmark
