#include "resources/opened_file.h"

namespace quillmark {
namespace {

std::int16_t Code(unsigned style) { return static_cast<std::int16_t>(style); }

TEST(FondStyles, AreThoseOfTheEntriesInsideTheRecord) {
  // The count minus 1 that is stored, the record's length (72 holds three entries), the entries that count.
  const std::tuple<std::int16_t, std::size_t, int> rows[] = {{4, 72, 3},  {1, 72, 2},      {2, 71, 2},
                                                             {-1, 72, 0}, {-32768, 72, 0}, {2, 59, 0},
                                                             {2, 53, 0},  {32767, 72, 3}};
  for (const auto& [stored, length, count] : rows) {
    FondBuilder fond(128);
    fond.Association(9, 0, 10).Association(9, 1, 11).Association(9, 2, 12).StoredAssociationCount(stored);
    fond.Truncate(length);
    const OpenedFile file(fond.Build());
    const ResourceHandle handle(file.Fond());
    for (int i = -1; i < 3; ++i) {
      const bool is_inside = i >= 0 && i < count;
      EXPECT_EQ(file->styleExists(i, handle.get()), is_inside) << stored << ' ' << length;
      EXPECT_EQ(file->getResIDForFOND(handle.get(), i), is_inside ? 10 + i : -1);
    }
    EXPECT_EQ(getCountOfUniqueStyles(file.get(), handle.get()), count) << stored << ' ' << length;
  }
}

TEST(FondStyles, AreComparedIn16BitsAndSortedAsUnsignedNumbers) {
  FondBuilder builder(128);
  builder.Association(0, Code(0xFFFF), 1).Association(9, 1, 30).Association(12, 1, 20).Association(10, 1, 30);
  builder.Association(0, Code(0x8001), 7).Association(9, 0, 5).Association(0, 0, 6).Association(0, 0, 4);
  const OpenedFile file(builder.Build());
  EXPECT_THAT(file->getSortedStyles(), ElementsAre(0, 1, Code(0x8001), Code(0xFFFF)));
  const ResourceHandle handle(file.Fond());
  Handle const fond = handle.get();
  EXPECT_THAT(file->getSortedStylesForFOND(fond), ElementsAre(0, 1, Code(0x8001), Code(0xFFFF)));
  EXPECT_EQ(getStyleFromStyleIndex(file.get(), fond, 2), Code(0x8001));
  EXPECT_EQ(getStyleFromStyleIndex(file.get(), fond, 4), -1);
  EXPECT_EQ(getStyleFromStyleIndex(file.get(), fond, -1), -1);
  EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(file.get(), fond, 1), 30);
  EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(file.get(), fond, 2), -1);
  EXPECT_EQ(file->FirstOutlineOfStyle(fond, 0), 6);
  // A code from 0x8000 comes back as a negative number, under which its resources are not found.
  EXPECT_THAT(file->getSortedNFNTsForFOND(fond, 0x8001), ElementsAre(7));
  EXPECT_THAT(file->getSortedNFNTsForFOND(fond, Code(0x8001)), IsEmpty());
  EXPECT_THAT(getSortedResIDsForStyle(file.get(), fond, 1), ElementsAre(20, 30));
  EXPECT_THAT(getSortedResIDsForStyle(file.get(), fond, -1), ElementsAre(4, 5, 6, 20, 30));  // every style
  EXPECT_THAT(getSortedResIDsForStyle(file.get(), nullptr, -1), IsEmpty());
  // A printer file is needed unless an outline is inside.
  EXPECT_TRUE(file->shouldHavePrinterFile(fond, 1));
  EXPECT_FALSE(file->shouldHavePrinterFile(fond, 0));
  EXPECT_FALSE(file->shouldHavePrinterFile(fond, Code(0x8001)));
  EXPECT_TRUE(file->shouldHavePrinterFile(fond, 2));
  EXPECT_TRUE(file->shouldHavePrinterFile(nullptr, 0));
}

TEST(FondStyles, OfAWholeFileAskMoreBytesOfEachFurtherFond) {
  // In order of ID: 60 bytes pass at place 0, are too few at place 1, and 72 are enough at place 2.
  ResourceForkBuilder fork;
  fork.Add(kFond, 30, FondBuilder(30).Association(0, 4, 1).Association(0, 5, 2).Association(0, 6, 3).Build());
  fork.Add(kFond, 20, FondBuilder(20).Association(0, 2, 1).Build());
  fork.Add(kFond, 10, FondBuilder(10).Association(0, 1, 1).Build());
  EXPECT_THAT(OpenedFile(fork)->getSortedStyles(), ElementsAre(1, 4, 5, 6));
}

TEST(FondStyles, FollowTheFondThatIsAsked) {
  ResourceForkBuilder fork;
  fork.Add(kFond, 1, FondBuilder(1).Association(9, 0, 1).Build());
  fork.Add(kFond, 2, FondBuilder(2).Association(9, 1, 1).Build());
  const OpenedFile file(fork);
  const ResourceHandle one(file.Fond(1));
  const ResourceHandle two(file.Fond(2));
  EXPECT_THAT(file->getSortedStylesForFOND(one.get()), ElementsAre(0));
  EXPECT_THAT(file->getSortedStylesForFOND(two.get()), ElementsAre(1));
  EXPECT_THAT(file->getSortedStylesForFOND(one.get()), ElementsAre(0));
  EXPECT_THAT(file->getSortedStylesForFOND(nullptr), IsEmpty());
}

TEST(FondStyles, DoubleByteFamiliesAreToldByWordOrFamilyId) {
  const std::tuple<std::int16_t, std::int16_t, std::size_t, bool> rows[] = {
      {128, 0, 54, false},  {128, -1, 52, true},  {128, 1, 51, false},   {16383, 0, 54, false},
      {16384, 0, 54, true}, {16895, 0, 54, true}, {16896, 0, 54, false}, {16384, 0, 51, false}};
  for (const auto& [family, word, length, is_double_byte] : rows) {
    FondBuilder fond(family);
    fond.International(7, word).Truncate(length);
    const OpenedFile file(fond.Build());
    const ResourceHandle handle(file.Fond());
    EXPECT_EQ(file->isDoubleByteFOND(handle.get()), is_double_byte) << family << ' ' << length;
  }
}

}  // namespace
}  // namespace quillmark
