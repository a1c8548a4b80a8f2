#include "api/creation.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "analysis/collection.h"
#include "analysis/name_table.h"
#include "api/face_builder.h"
#include "builders/apple_double_builder.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/memory_files.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "hostile/sample_files.h"
#include "platform/budget.h"
#include "platform/crc32.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

SfntBuilder Font(std::u16string_view full_name) {
  return SfntBuilder::CrossPlatform().WindowsName(1, u"Quill").WindowsName(4, full_name);
}

std::uint32_t Crc(const std::string& bytes) { return Crc32(0, AsBytes(bytes)); }

// The PostScript names; empty for null.
std::string Names(const QM_FontArray* array) {
  std::string names;
  for (std::size_t i = 0; array != nullptr && i < array->size(); ++i) {
    names += (i == 0 ? "" : ", ") + array->view(i).postScriptName.str();
  }
  return names;
}

// A family of outlines from that resource ID on, one a style: "Face-200" and so on. Style 1 is kerned.
void AddFamily(ResourceForkBuilder& fork, int id, int styles, std::size_t kerning_pairs) {
  const auto number = [](int value) { return static_cast<std::int16_t>(value); };
  FondBuilder fond(number(id));
  for (int style = 0; style < styles; ++style) {
    fond.Association(0, number(style), number(id + style));
    const SfntBuilder outline = SfntBuilder::CrossPlatform().MacName(4, "Face " + std::to_string(id + style));
    fork.Add(FourCharCode("sfnt"), number(id + style), outline.Build());
  }
  fond.Kerning(1, std::vector<FondBuilder::KerningPair>(kerning_pairs, {1, 2, -3}));
  fork.Add(FourCharCode("FOND"), number(id), fond.Build(), "Quill" + std::to_string(id));
}

// One font, reached in two ways.
void ExpectSameFont(const QM_FontSpecifier& a, const QM_FontSpecifier& b) {
  for (const TextGetter get : {QM_GetFamilyName, QM_GetPostScriptName, QM_GetFullName, QM_GetDisplayName,
                               QM_GetWindowsFullName, QM_GetVersion, QM_GetFoundryName}) {
    EXPECT_EQ(Ask(get, ArrayOf(a)), Ask(get, ArrayOf(b)));
  }
  EXPECT_EQ(a.checksum, b.checksum);
}

struct CreationTest : ::testing::Test {
  TempFolder folder_;
};

TEST_F(CreationTest, AnswersOneWithoutAFace) {
  ASSERT_EQ(mkfifo(folder_.Path("fifo.ttf").c_str(), 0600), 0);
  QM_FontArray untouched;
  QM_FontArray* array = &untouched;
  for (const std::string& path :
       {folder_.Path("missing.ttf"), folder_.Path("missing.ttc"), folder_.path(), folder_.Path("fifo.ttf"),
        folder_.Write("empty.otf", ""), folder_.Write("empty.ttc", ""), folder_.Write("text.ps", "%!PS"),
        folder_.Write("nameless.ttf", SfntBuilder::CrossPlatform().Build()), std::string(5000, 'x')}) {
    EXPECT_EQ(QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array), 1) << path;
    EXPECT_EQ(array, &untouched) << path;
  }
}

TEST_F(CreationTest, GivesWhatWasAskedFor) {
  SfntBuilder font = SfntBuilder::CrossPlatform().MacName(0, "Copyright URW").MacName(1, "Mac family  ");
  font.MacName(4, "Mac full").MacName(5, "Version 1.5").MacName(6, "Name").WindowsName(4, u"Windows full");
  const std::string path = folder_.Write("a.ttf", font.Build());
  for (const auto& [asked, getter, text] : {std::tuple(0x1u, &QM_GetPostScriptName, "Name"),
                                            {0x2u, &QM_GetKindName, "TrueType"},
                                            {0x4u, &QM_GetFoundryName, "URW"},
                                            {0x8u, &QM_GetVersion, "1.5"},
                                            {0x1000u, &QM_GetFamilyName, "Mac family"},
                                            {0x8000u, &QM_GetDisplayName, "Name"},
                                            {0x10000u, &QM_GetFullName, "Mac full"},
                                            {0x40000u, &QM_GetPlatform, "crossplatform"},
                                            {0x100000u, &QM_GetWindowsFullName, "Windows full"}}) {
    const OwnedArray array = Create(path, asked);
    EXPECT_EQ(Ask(getter, *array), text);
    EXPECT_EQ(array->view(0).attributes, asked);
  }
}

// Whether the data fork alone counts is decided by the platform, which is known only when asked for.
TEST_F(CreationTest, ChecksumDependsOnThePlatformAskedFor) {
  const std::string font = Font(u"A").Build();
  const std::string fork = ResourceForkBuilder().Add(FourCharCode("vers"), 1, "1.0").Build();
  const std::string path = folder_.Write("a.ttf", font);
  folder_.Write("._a.ttf", AppleDoubleBuilder().ResourceFork(fork).FinderInfo("sfnt", "ASPF").Build());
  const QM_FontSpecifier with = Create(path)->at(0);
  EXPECT_EQ(with.checksum, Crc(font));
  EXPECT_EQ(with.legacyChecksum, Crc(font + fork));
  EXPECT_EQ(with.outlineFileSize, font.size() + fork.size());
  EXPECT_EQ(with.fileCreator, FourCharCode("ASPF"));
  EXPECT_EQ(with.style, 0);
  EXPECT_EQ(Create(path, QM_ATTRIBUTE_CHECKSUM)->at(0).checksum, Crc(font + fork));
}

TEST_F(CreationTest, ReadsTheFacesOfACollection) {
  CollectionBuilder collection;
  collection.Face(Font(u"A")).Face(SfntBuilder::CrossPlatform());  // without names
  collection.Face(Font(u"C").Table("kern", std::string("\0\0\0\3\0\0\0\4", 8)).Table("more", "behind it"));
  collection.Face(Font(u"a")).Face(Font(u"A").Table("more", "another face")).Trailer(std::string(2000, '.'));
  const std::string path = folder_.Write("a.TTC", collection.Build());
  const OwnedArray array = Create(path);
  ASSERT_EQ(Names(array.get()), "A, C, a");
  EXPECT_EQ(array->view(1).kerningChecksum, 7u);
  EXPECT_EQ(array->view(1).legacyChecksum | array->view(1).outlineFileSize, 0u);
  const OwnedArray bare = Create(path, 0);
  ASSERT_EQ(bare->size(), 1u) << "faces without a name are duplicates";
  EXPECT_EQ(bare->at(0).kind.str(), "TrueType Collection") << "whatever was asked for";
  EXPECT_EQ(bare->at(0).platform.str(), "crossplatform");

  std::vector<std::string> alone;
  ASSERT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(path, folder_.path(), alone), kCollectionOk);
  ExpectSameFont(array->view(0), Create(alone.at(0))->view(0));
}

TEST_F(CreationTest, ReadsEveryStyleOfEveryFond) {
  ResourceForkBuilder fork;
  AddFamily(fork, 200, 3, 1);
  AddFamily(fork, 300, 2, 1);
  const std::string path = folder_.Write("a.dfont", fork.Build());
  const OwnedArray array = Create(path);
  ASSERT_EQ(Names(array.get()), "Face-200, Face-201, Face-202, Face-300, Face-301");
  for (std::size_t i = 0; i < 5; ++i) {
    const QM_FontSpecifier face = array->at(i);
    EXPECT_EQ(face.postScriptName.str(), "Face-" + std::to_string(face.firstResourceID));
    EXPECT_EQ(face.firstResourceID, face.fondResourceID + face.style);
    EXPECT_EQ(face.kind.str() + face.platform.str(), "TrueTypemac");
    EXPECT_EQ(face.outlineFileSize, ReadFile(path).size());
    EXPECT_EQ(face.kerningChecksum != 0, face.style == 1) << "the FOND's, for the style that it kerns";
  }
  std::uint32_t index = 7;
  EXPECT_EQ(QM_GetFontIndexForFONDResourceID(array.get(), 300, 1, &index), 0);
  EXPECT_EQ(index, 4u);
  const std::string outline = SfntBuilder::CrossPlatform().MacName(4, "Face 200").Build();
  ExpectSameFont(array->view(0), Create(folder_.Write("a.ttf", outline))->view(0));
}

// The second family's face goes again, as a duplicate. Its PostScript name has a file name from then on,
// which the third one, of a script whose names are made by another rule, finds.
TEST_F(CreationTest, KeepsThePrinterFileNamesOfDuplicates) {
  const FondBuilder outline = FondBuilder(128).Association(0, 0, 600);
  const FondBuilder bitmap = FondBuilder(129).StyleString("Nib").Association(12, 0, 600);
  const FondBuilder japanese =
      FondBuilder(16400).StyleString("Nib").International(0, 1).Association(12, 0, 500);
  ResourceForkBuilder fork;
  fork.Add(FourCharCode("NFNT"), 500, "bits").Add(FourCharCode("sfnt"), 600, Font(u"Outline").Build());
  fork.Add(FourCharCode("FOND"), 128, outline.Build(), "A")
      .Add(FourCharCode("FOND"), 129, bitmap.Build(), "B");
  fork.Add(FourCharCode("FOND"), 130, japanese.Build(), "C");
  const std::string nib = folder_.Write("Nib", "%!PS /FontName /Nib def");

  const OwnedArray array = Create(folder_.Write("fonts", fork.Build()));
  ASSERT_EQ(Names(array.get()), "Outline, Nib");
  EXPECT_EQ(array->view(1).fondResourceID, 130);
  EXPECT_EQ(array->view(1).outlineFileName.str(), nib);
}

// A suitcase whose bitmaps go with PostScript printer fonts beside it; but for the first they are missing.
TEST_F(CreationTest, CarriesTheOutlineFilesCodesOnToTheNextFace) {
  Sample suitcase = SamplesOf(SmallOutlines()).at(6);
  suitcase.parts.resize(4);
  ASSERT_TRUE(WriteSample(folder_.path(), suitcase));
  const OwnedArray array = Create(folder_.Path("Suitcase"));
  ASSERT_EQ(Names(array.get()), "Quill, Quill-Bold, Quill-Italic");
  const QM_FontSpecifier& plain = array->view(0);
  EXPECT_EQ(plain.outlineFileName.str(), folder_.Path("Quill"));
  EXPECT_EQ(plain.outlineFileSize, SmallOutlines().post.size()) << "of both forks; the other is empty";
  const std::uint32_t printer = FourCharCode("ASPF");
  EXPECT_EQ(plain.outlineFileCreator, printer);
  EXPECT_EQ(array->view(1).outlineFileCreator, 0u);
  EXPECT_EQ(plain.fileCreator, FourCharCode("DMOV"));
  EXPECT_EQ(array->view(1).fileCreator, printer);
}

// It gets one pass, in which the outline of ID -1 stands for the one that no entry names.
TEST_F(CreationTest, ReadsAFondWithoutStyles) {
  ResourceForkBuilder fork;
  fork.Add(FourCharCode("FOND"), 128, FondBuilder(128).Build(), "Quill");
  fork.Add(FourCharCode("sfnt"), -1, Font(u"A").Build());
  const OwnedArray array = Create(folder_.Write("a.dfont", fork.Build()));
  ASSERT_EQ(Names(array.get()), "A");
  EXPECT_EQ(array->view(0).style, -1);
  EXPECT_EQ(array->view(0).fondResourceID, 128);
}

// One name table in every face, whose only text lies in what follows it.
TEST_F(CreationTest, TextPastASharedNameTableIsThatOfTheFace) {
  const SfntBuilder plain =
      SfntBuilder().Table("name", std::string("\0\0\0\1\0\x14\0\1\0\0\0\0\0\6\0\4\0\0\0", 20));
  const auto with = [&](const char* next) { return SfntBuilder(plain).Table("next", next); };
  CollectionBuilder collection;
  collection.Face(with("One ")).Face(with("Two ")).Face(plain).Face(with("Six ")).Trailer("end");
  const OwnedArray array = Create(folder_.Write("a.ttc", collection.Build()), QM_ATTRIBUTE_POSTSCRIPT_NAME);
  ASSERT_EQ(Names(array.get()), "One-, Two-, Six-");
}

// From the disk and from memory, and cut at every length. Other damage is done by fuzz/mutate.
TEST_F(CreationTest, ReadsEveryKindOfFileAndSurvivesCuts) {
  const std::map<std::string, std::string> expected = {
      {"truetype", "OpenType - TT Quill, "},
      {"opentype", "OpenType - PS QuillPS, "},
      {"collection",
       "TrueType Collection QuillOne, TrueType Collection QuillTwo, TrueType Collection QuillThree, "},
      {"dfont", "TrueType Quill, TrueType QuillBold, PostScript Quill-Italic, "},
      {"appledouble", "TrueType Quill, TrueType QuillBold, PostScript Quill-Italic, "},
      {"attribute", "PostScript Quill, PostScript Quill-Bold, PostScript Quill-Italic, "},
      {"suitcase", "PostScript Quill, "},
      {"post", ""}};
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    SCOPED_TRACE(sample.kind);
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;  // no extended attributes
    const std::string path = folder.Path(sample.font);
    const QM_FontArray on_disk = CreateFaces(SystemFiles(), path, QM_ATTRIBUTES_ALL).faces;
    std::string faces;
    for (std::size_t i = 0; i < on_disk.size(); ++i) {
      faces += on_disk.view(i).kind.str() + " " + on_disk.view(i).postScriptName.str() + ", ";
    }
    EXPECT_EQ(faces, expected.at(sample.kind));
    if (sample.kind == "attribute") continue;
    std::map<std::string, std::string> files;
    for (const SamplePart& part : sample.parts) files[folder.Path(part.name)] = part.bytes;
    const auto create = [&] { return CreateFaces(MemoryFiles(files), path, QM_ATTRIBUTES_ALL).faces; };
    const QM_FontArray in_memory = create();
    EXPECT_EQ(EverythingOf(&in_memory), EverythingOf(&on_disk));
    for (auto& [name, bytes] : files) {
      const std::string sound = bytes;
      for (std::size_t length = 0; length < sound.size(); length += length < 400 ? 1 : 7) {
        bytes = sound.substr(0, length);
        create();
      }
      bytes = sound;
    }
  }
}

// Fonts as people have them use a small part of the budget, a file that repeats its bytes ends early with
// whole faces.
CreationResult CreateFrom(const std::string& path, const std::string& bytes) {
  const std::map<std::string, std::string> files = {{path, bytes}};
  return CreateFaces(MemoryFiles(files), path, QM_ATTRIBUTES_ALL);
}

// Of a collection whose faces share one directory, all after the first are faults.
TEST(Creation, KeepsTheFirstFaultsAndTellsWhetherThereWereMore) {
  CollectionBuilder collection;
  collection.Face(SfntBuilder::CrossPlatform().MacName(4, "One"));
  for (int i = 0; i < 256; ++i) collection.SameFaceAs(0);
  for (const bool has_more : {false, true}) {
    if (has_more) collection.SameFaceAs(0);
    const CreationResult result = CreateFrom("/a.ttc", collection.Trailer("end").Build());
    EXPECT_EQ(result.faults.size(), 256u);
    EXPECT_EQ(result.faults_dropped, has_more);
  }
}

TEST(Budget, OrdinarySuitcasesKeepMoreThanHalfOfIt) {
  for (const auto& [families, styles, kerning_pairs] : {std::tuple(1, 48, 3000u), {100, 4, 30u}}) {
    ResourceForkBuilder fork;
    for (int i = 0; i < families; ++i) AddFamily(fork, 200 + styles * i, styles, kerning_pairs);
    const std::string bytes = fork.Build();
    const CreationResult result = CreateFrom("/a.dfont", bytes);
    EXPECT_FALSE(result.spent_on);
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
    EXPECT_EQ(result.spent_on, Work::kFamilies);
    // Those of the outline are duplicates of each other.
    ASSERT_EQ(Names(&result.faces), "Face-200, Face-201, Face-202, Face-203, Face-0");
    EXPECT_NE(result.faces.view(4).checksum, 0u) << "every face is complete";
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(result.faces.view(i).checksum, right.faces.view(i).checksum);
      EXPECT_EQ(result.faces.view(i).kerningChecksum, right.faces.view(i).kerningChecksum);
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
  EXPECT_EQ(result.spent_on, Work::kNames);
  EXPECT_EQ(Names(&result.faces), "First, Shared");

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
