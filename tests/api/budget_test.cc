// Creation within its budget: fonts as people have them use a small part of it, a file that repeats its bytes
// ends early with whole faces; and creation over a file system that is not the machine's.
#include "platform/budget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "analysis/name_table.h"
#include "api/creation.h"
#include "api/face_builder.h"
#include "api/family_faces.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/memory_files.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "hostile/sample_files.h"
#include "quillmark/quillmark.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kFond = FourCharCode("FOND");
constexpr std::uint32_t kSfnt = FourCharCode("sfnt");

std::string Outline(int number) {
  return SfntBuilder::CrossPlatform().MacName(4, "Face " + std::to_string(number)).Build();
}

// A family of outlines from that resource ID on, one a style.
void AddFamily(ResourceForkBuilder& fork, std::int16_t id, int styles, int kerning_pairs) {
  FondBuilder fond(id);
  for (int style = 0; style < styles; ++style) {
    const auto outline = static_cast<std::int16_t>(id + style);
    fond.Association(0, static_cast<std::int16_t>(style), outline);
    fork.Add(kSfnt, outline, Outline(outline));
  }
  fond.Kerning(0, std::vector<FondBuilder::KerningPair>(static_cast<std::size_t>(kerning_pairs), {1, 2, -3}));
  fork.Add(kFond, id, fond.Build(), "Quill" + std::to_string(id));
}

TEST(Budget, OrdinarySuitcasesKeepMoreThanHalfOfIt) {
  ResourceForkBuilder one_family;
  AddFamily(one_family, 200, 48, 3000);
  ResourceForkBuilder many_families;
  for (int family = 0; family < 100; ++family) {
    AddFamily(many_families, static_cast<std::int16_t>(200 + 4 * family), 4, 30);
  }
  for (const auto& [fork, faces] : {std::pair(&one_family, 48u), std::pair(&many_families, 400u)}) {
    const std::string bytes = fork->Build();
    const MemoryFiles files({{"/a.dfont", bytes}});
    CreationResult made;
    Creation creation(files, "/a.dfont", QM_ATTRIBUTES_ALL, made);
    {
      const ResourceFileHolder resources(AllocateResourceFile(creation.file, true));
      AddFamilyFaces(creation, *resources.get(), countResType(resources.get(), kFond));
    }
    EXPECT_EQ(made.faces.size(), faces);
    EXPECT_GT(creation.budget.left(), Budget(bytes.size()).left() / 2) << faces;
    const CreationResult result = CreateFaces(files, "/a.dfont", QM_ATTRIBUTES_ALL);
    EXPECT_FALSE(result.budget_spent);
    EXPECT_EQ(result.faces.size(), faces);
  }
}

// One FOND under many names, and FONDs that begin 64 bytes apart and share the rest: each of 3,000 styles,
// all of one outline. An ordinary family comes before them.
std::string RepeatingFile(bool is_overlapping) {
  constexpr std::uint32_t kFonds = 400;
  constexpr std::uint32_t kStyles = 3000;
  BigEndianWriter records;
  for (std::uint32_t i = 0; i < (is_overlapping ? kFonds : 1); ++i) {
    if (i > 0) records.U32(64 * (kFonds - i) - 4 + 6 * kStyles);  // the length word of the next FOND
    records.Zeros(52).U16(kStyles - 1).Zeros(6);
  }
  for (std::uint32_t style = 0; style < kStyles; ++style) records.U16(0).U16(style).U16(0);
  ResourceForkBuilder fork;
  AddFamily(fork, 200, 4, 30);
  fork.Add(kSfnt, 0, Outline(0)).ShareEqualData();
  for (std::uint32_t i = 0; i < kFonds; ++i) {
    fork.Add(kFond, static_cast<std::int16_t>(1000 + i), records.bytes(), "Name" + std::to_string(i));
  }
  const std::string plain = fork.Build();
  for (std::uint32_t i = 1; is_overlapping && i < kFonds; ++i) {
    const std::size_t data = ResourceForkBuilder::ReferenceOffset(plain, 1, 1 + i) + 4;
    fork.SetU32(data, U32At(AsBytes(plain), data).value() + 64 * i);
  }
  return fork.Build();
}

TEST(Budget, FilesThatRepeatTheirBytesEndWithTheFacesFoundFirst) {
  ResourceForkBuilder ordinary;
  AddFamily(ordinary, 200, 4, 30);
  const auto right =
      CreateFaces(MemoryFiles({{"/a.dfont", ordinary.Build()}}), "/a.dfont", QM_ATTRIBUTES_ALL);
  ASSERT_EQ(right.faces.size(), 4u);
  for (const bool is_overlapping : {false, true}) {
    const MemoryFiles files({{"/a.dfont", RepeatingFile(is_overlapping)}});
    const CreationResult result = CreateFaces(files, "/a.dfont", QM_ATTRIBUTES_ALL);
    EXPECT_TRUE(result.budget_spent);
    ASSERT_EQ(result.faces.size(), 5u) << "those of the outline are duplicates of each other";
    for (std::size_t i = 0; i < 5; ++i) {
      const QM_FontSpecifier& face = result.faces.view(i);
      EXPECT_EQ(face.postScriptName.str(), i < 4 ? "Face-" + std::to_string(200 + i) : "Face-0");
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
  const MemoryFiles files({{"/a.ttc", collection.Trailer("end").Build()}});
  const CreationResult result = CreateFaces(files, "/a.ttc", QM_ATTRIBUTES_ALL);
  EXPECT_TRUE(result.budget_spent);
  ASSERT_EQ(result.faces.size(), 2u);
  EXPECT_EQ(result.faces.view(0).postScriptName.str() + result.faces.view(1).postScriptName.str(),
            "FirstShared");

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

// What the parts of a sample are on a disk.
std::map<std::string, std::string> FilesOf(const Sample& sample, const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const SamplePart& part : sample.parts) files[folder + "/" + part.name] = part.bytes;
  return files;
}

TEST(FileSystem, AnotherOneGivesWhatTheDiskGives) {
  int samples = 0;
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    if (sample.kind == "attribute") continue;
    std::string path;
    std::map<std::string, std::string> files;
    std::string on_disk;
    {
      const TempFolder folder;
      ASSERT_TRUE(WriteSample(folder.path(), sample));
      path = folder.Path(sample.font);
      files = FilesOf(sample, folder.path());
      on_disk = EverythingOf(Create(path).get());
    }
    const CreationResult result = CreateFaces(MemoryFiles(files), path, QM_ATTRIBUTES_ALL);
    EXPECT_EQ(result.faces.size() == 0 ? "none" : EverythingOf(&result.faces), on_disk) << sample.kind;
    ++samples;
    for (const std::uint64_t fail_from : {0u, 1u, 16u, 300u, 2000u}) {
      const CreationResult failed = CreateFaces(MemoryFiles(files, fail_from), path, QM_ATTRIBUTES_ALL);
      EXPECT_FALSE(failed.budget_spent) << sample.kind << " " << fail_from;
      EXPECT_LE(failed.faces.size(), fail_from == 0 ? 0 : result.faces.size())
          << sample.kind << " " << fail_from;
    }
  }
  EXPECT_EQ(samples, 7);
}

}  // namespace
}  // namespace quillmark
