#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

std::int16_t Code(unsigned style) { return static_cast<std::int16_t>(style); }

TEST(Family, StylesAreThoseOfTheEntriesInsideTheRecord) {
  // The count minus 1 that is stored, the record's length (72 holds three entries), the entries that count.
  const std::tuple<std::int16_t, std::size_t, int> rows[] = {{4, 72, 3},  {1, 72, 2},      {2, 71, 2},
                                                             {-1, 72, 0}, {-32768, 72, 0}, {2, 59, 0},
                                                             {2, 53, 0},  {32767, 72, 3}};
  for (const auto& [stored, length, count] : rows) {
    FondBuilder fond(128);
    fond.Association(9, 0, 10).Association(9, 1, 11).Association(9, 2, 12).StoredAssociationCount(stored);
    fond.Truncate(length);
    const OpenedSuitcase file(fond);
    const Family family = file.FamilyOf();
    for (int i = -1; i < 3; ++i) {
      const bool is_inside = i >= 0 && i < count;
      EXPECT_EQ(family.styleExists(i), is_inside) << stored << ' ' << length;
      EXPECT_EQ(family.getResIDForFOND(i), is_inside ? 10 + i : -1);
    }
  }
}

TEST(Family, StylesAreComparedIn16BitsAndSortedAsUnsignedNumbers) {
  FondBuilder builder(128);
  builder.Association(0, Code(0xFFFF), 1).Association(9, 1, 30).Association(12, 1, 20).Association(10, 1, 30);
  builder.Association(0, Code(0x8001), 7).Association(9, 0, 5).Association(0, 0, 6).Association(0, 0, 4);
  const OpenedSuitcase file(builder);
  EXPECT_THAT(file->getSortedStyles(), ElementsAre(0, 1, Code(0x8001), Code(0xFFFF)));
  const Family family = file.FamilyOf();
  EXPECT_THAT(family.styles().codes(), ElementsAre(0, 1, Code(0x8001), Code(0xFFFF)));
  EXPECT_EQ(family.getFirstResourceID(1), 30);
  EXPECT_EQ(family.getFirstResourceID(2), -1);
  EXPECT_EQ(family.FirstOutlineOfStyle(0), 6);
  // A code from 0x8000 comes back as a negative number, under which its resources are not found.
  EXPECT_THAT(family.getSortedNFNTsForFOND(0x8001), ElementsAre(7));
  EXPECT_THAT(family.getSortedNFNTsForFOND(Code(0x8001)), ElementsAre());
  EXPECT_THAT(family.getSortedNFNTsForFOND(1), ElementsAre(20, 30));
  // A printer file is needed unless an outline is inside.
  EXPECT_TRUE(family.shouldHavePrinterFile(1) && family.shouldHavePrinterFile(2));
  EXPECT_FALSE(family.shouldHavePrinterFile(0) || family.shouldHavePrinterFile(Code(0x8001)));
}

TEST(Family, OfNoFondHasNothing) {
  Family family(nullptr, nullptr);
  EXPECT_FALSE(family.exists() || family.has_data() || family.styleExists(0) || family.isDoubleByteFOND());
  EXPECT_EQ(family.id(), -1);
  EXPECT_EQ(family.getFirstResourceID(0), -1);
  EXPECT_EQ(family.getPSPrinterNameForFOND(0) + family.getPostScriptNameForFOND(0), "");
  EXPECT_EQ(family.getResourceNameFromFOND(), std::nullopt);
  bool is_mm = true;
  EXPECT_EQ(family.normalizePostScriptName("Given", &is_mm), "Given");
  EXPECT_EQ(family.kerning().SumOfBytes(0) | family.kerning().CrcOfPairs(0), 0u);
}

TEST(Family, StylesOfAWholeFileAskMoreBytesOfEachFurtherFond) {
  // In order of ID: 60 bytes pass at place 0, are too few at place 1, and 72 are enough at place 2.
  ResourceForkBuilder fork;
  fork.Add(kFond, 30, FondBuilder(30).Association(0, 4, 1).Association(0, 5, 2).Association(0, 6, 3).Build());
  fork.Add(kFond, 20, FondBuilder(20).Association(0, 2, 1).Build());
  fork.Add(kFond, 10, FondBuilder(10).Association(0, 1, 1).Build());
  EXPECT_THAT(OpenedSuitcase(fork)->getSortedStyles(), ElementsAre(1, 4, 5, 6));
}

TEST(Family, IsDoubleByteByWordOrFamilyId) {
  const std::tuple<std::int16_t, std::int16_t, std::size_t, bool> rows[] = {
      {128, 0, 54, false},  {128, -1, 52, true},  {128, 1, 51, false},   {16383, 0, 54, false},
      {16384, 0, 54, true}, {16895, 0, 54, true}, {16896, 0, 54, false}, {16384, 0, 51, false}};
  for (const auto& [family, word, length, is_double_byte] : rows) {
    FondBuilder fond(family);
    fond.International(7, word).Truncate(length);
    EXPECT_EQ(OpenedSuitcase(fond).FamilyOf().isDoubleByteFOND(), is_double_byte) << family << ' ' << length;
  }
}

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
