// Creation within its budget: fonts as people have them use a small part of it, a file that repeats its bytes
// ends early with whole faces.
#include "platform/budget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "analysis/name_table.h"
#include "api/creation.h"
#include "api/face_builder.h"
#include "builders/collection_builder.h"
#include "builders/memory_files.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using ::testing::ElementsAre;

CreationResult CreateFrom(const std::string& path, const std::string& bytes) {
  const std::map<std::string, std::string> files = {{path, bytes}};
  return CreateFaces(MemoryFiles(files), path, QM_ATTRIBUTES_ALL);
}

TEST(Budget, OrdinarySuitcasesKeepMoreThanHalfOfIt) {
  for (const auto& [families, styles, kerning_pairs] : {std::tuple(1, 48, 3000u), {100, 4, 30u}}) {
    ResourceForkBuilder fork;
    for (int i = 0; i < families; ++i) AddFamily(fork, 200 + styles * i, styles, kerning_pairs);
    const std::string bytes = fork.Build();
    const CreationResult result = CreateFrom("/a.dfont", bytes);
    EXPECT_FALSE(result.budget_spent);
    EXPECT_EQ(result.faces.size(), static_cast<std::size_t>(families * styles));
    EXPECT_LT(result.charged_steps, Budget(bytes.size()).left() / 2) << families;
  }
}

// An ordinary family, and behind it FONDs that are one under many names, or begin 64 bytes apart and share
// the rest: each of 3,000 styles, all of one outline.
std::string RepeatingFile(bool is_overlapping) {
  constexpr std::uint32_t kFonds = 400;
  constexpr std::uint32_t kStyles = 3000;
  BigEndianWriter fonds;
  for (std::uint32_t i = 0; i < kFonds; ++i) {
    if (i > 0) fonds.U32(64 * (kFonds - i) - 4 + 6 * kStyles);  // the length word of this FOND
    fonds.Zeros(52).U16(kStyles - 1).Zeros(6);
  }
  for (std::uint32_t style = 0; style < kStyles; ++style) fonds.U16(0).U16(style).U16(0);
  ResourceForkBuilder fork;
  AddFamily(fork, 200, 4, 30);
  fork.Add(FourCharCode("sfnt"), 0, SfntBuilder::CrossPlatform().MacName(4, "Face 0").Build());
  for (std::uint32_t i = 0; i < kFonds; ++i) {
    fork.Add(FourCharCode("FOND"), static_cast<std::int16_t>(1000 + i), i == 0 ? fonds.bytes() : "",
             "Name" + std::to_string(i));
  }
  const std::string plain = fork.Build();
  const auto reference = [&](std::size_t i) { return ResourceForkBuilder::ReferenceOffset(plain, 1, i) + 4; };
  const std::uint32_t first = U32At(AsBytes(plain), reference(1)).value();
  for (std::uint32_t i = 0; i < kFonds; ++i) {
    fork.SetU32(reference(1 + i), first + 64 * (is_overlapping ? i : kFonds - 1));
  }
  return fork.Build();
}

TEST(Budget, FilesThatRepeatTheirBytesEndWithTheFacesFoundFirst) {
  ResourceForkBuilder ordinary;
  AddFamily(ordinary, 200, 4, 30);
  const CreationResult right = CreateFrom("/a.dfont", ordinary.Build());
  for (const bool is_overlapping : {false, true}) {
    const CreationResult result = CreateFrom("/a.dfont", RepeatingFile(is_overlapping));
    EXPECT_TRUE(result.budget_spent);
    // Those of the outline are duplicates of each other.
    ASSERT_THAT(Names(result.faces), ElementsAre("Face-200", "Face-201", "Face-202", "Face-203", "Face-0"));
    for (std::size_t i = 0; i < 5; ++i) {
      const QM_FontSpecifier& face = result.faces.view(i);
      EXPECT_FALSE(face.displayName.empty() || face.checksum == 0) << "every face is complete";
      if (i == 4) continue;
      EXPECT_EQ(face.checksum, right.faces.view(i).checksum);
      EXPECT_EQ(face.kerningChecksum, right.faces.view(i).kerningChecksum);
    }
  }
}

// A name, and many more records that share one long text, which is no PostScript name.
std::string RepeatingNameTable(std::uint32_t records) {
  const std::uint32_t texts = 6 + 12 * (records + 1);
  const std::uint32_t base = std::min(texts, 0xFFFFu);  // of all that the records name
  BigEndianWriter table;
  table.U16(0).U16(records + 1).U16(base).U16(1).U16(0).U16(0).U16(4).U16(6).U16(texts - base);
  for (std::uint32_t i = 0; i < records; ++i) {
    table.U16(3).U16(1).U16(0x409).U16(6).U16(1022).U16(texts - base + 6);
  }
  table.Text("Shared");
  for (int i = 0; i < 511; ++i) table.U16(0xE9);
  return table.bytes();
}

TEST(Budget, NameTablesThatRepeatTheirTextEndEarly) {
  CollectionBuilder collection;
  collection.Face(SfntBuilder::CrossPlatform().MacName(4, "First"));
  for (int i = 0; i < 100; ++i) collection.Face(SfntBuilder().Table("name", RepeatingNameTable(1000)));
  const CreationResult result = CreateFrom("/a.ttc", collection.Trailer("end").Build());
  EXPECT_TRUE(result.budget_spent);
  EXPECT_THAT(Names(result.faces), ElementsAre("First", "Shared"));

  for (const auto& [records, name] : {std::pair(100u, "Shared"), {8000u, "-"}}) {
    const std::string font = SfntBuilder().Table("name", RepeatingNameTable(records)).Build();
    char buffer[32] = "-";
    char* fond = nullptr;
    QM_GetPostScriptNameFromNamesTable(font.data(), static_cast<std::uint32_t>(font.size()), &fond, &fond, 0,
                                       buffer, sizeof(buffer));
    EXPECT_STREQ(buffer, name) << records;
    EXPECT_EQ(getPostScriptNameFromNamesTable(SfntData(AsBytes(font))), "Shared") << "without a bound";
  }
}

}  // namespace
}  // namespace quillmark
