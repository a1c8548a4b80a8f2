#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

TEST(FondNames, AreDecodedAsMacRomanUnlessTheFamilyIsJapanese) {
  const std::string kanji = "\x96\xBE";  // one character in MacJapanese, two in MacRoman
  const FondBuilder one_byte = FondBuilder(128).StyleString("X");
  const FondBuilder bare(16384);
  const FondBuilder mapped = FondBuilder(16384).StyleString("X-Y-Z");  // with a style mapping table
  struct Row {
    FondBuilder fond;
    std::vector<std::pair<std::int16_t, std::int16_t>> entries;  // sizes and IDs
    std::string stored;
    ResType type;  // of a resource with ID 5
    std::string data, expected;
  };
  const Row rows[] = {
      {one_byte, {{0, 5}}, kanji, kSfnt, "typ1 ", "ñæ"},
      {bare, {}, kanji, kSfnt, "typ1 ", "ñæ"},
      {mapped, {}, kanji, kSfnt, "typ1 ", "明"},
      {mapped, {{0, 6}}, kanji, kSfnt, "typ1 ", "ñæ"},  // the outline is missing
      {mapped, {{0, 5}}, kanji, kSfnt, "OTTO", "明"},   // 4 bytes say nothing
      {bare, {{0, 5}}, kanji, kSfnt, "typ1 ", "明"},
      {mapped, {{0, 5}}, kanji, kSfnt, "true ", "ñæ"},
      {bare, {{0, 5}}, "A-CID" + kanji, kSfnt, "true ", "A-CID明"},
      {bare, {{0, 5}}, kanji + "CID-B", kSfnt, "true ", "明CID-B"},
      {mapped, {{9, 4}, {9, 5}}, kanji, kFont, "x", "ñæ"},
      {mapped, {{9, 5}}, kanji, kNfnt, "x", "明"},
      {mapped, {{9, 4}, {0, 5}}, kanji, kSfnt, "true ", "明"},  // the first size counts
      {mapped, {{0, 4}, {9, 5}}, kanji, kFont, "x", "ñæ"},
      {mapped, {}, "cut \x81", kSfnt, "x", "none"},
  };
  for (const Row& row : rows) {
    FondBuilder fond = row.fond;
    for (const auto& [size, id] : row.entries) fond.Association(size, 0, id);
    const OpenedSuitcase file(
        ResourceForkBuilder().Add(kFond, 128, fond.Build(), row.stored).Add(row.type, 5, row.data));
    EXPECT_EQ(file.FamilyOf().getResourceNameFromFOND().value_or("none"), row.expected) << &row - rows;
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
    const OpenedSuitcase file(FondBuilder(128), stored);
    bool flag = flag_before;
    EXPECT_EQ(file.FamilyOf().normalizePostScriptName("Given", &flag), expected) << stored;
    EXPECT_EQ(flag, flag_after) << stored;
    EXPECT_EQ(file.FamilyOf().normalizePostScriptName("Given", nullptr), "Given");
  }
}

}  // namespace
}  // namespace quillmark
