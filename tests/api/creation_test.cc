#include "api/creation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <map>
#include <string>
#include <utility>

#include "api/face_builder.h"
#include "builders/apple_double_builder.h"
#include "builders/big_endian.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/memory_files.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using ::testing::ElementsAre;

SfntBuilder Font(std::u16string_view full_name) {
  return SfntBuilder::CrossPlatform().WindowsName(1, u"Quill  ").WindowsName(4, full_name);
}

std::uint32_t Crc(std::string_view bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

std::vector<std::string> Names(const QM_FontArray& array) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < array.size(); ++i) names.push_back(array.view(i).postScriptName.str());
  return names;
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

TEST_F(CreationTest, GivesOnlyWhatWasAskedFor) {
  const std::string path = folder_.Write("a.ttf", Font(u"A").Build());
  const std::pair<std::uint32_t, OmString QM_FontSpecifier::*> rows[] = {
      {0x1, &QM_FontSpecifier::postScriptName},      {0x2, &QM_FontSpecifier::kind},
      {0x1000, &QM_FontSpecifier::family},           {0x8000, &QM_FontSpecifier::displayName},
      {0x10000, &QM_FontSpecifier::fullName},        {0x40000, &QM_FontSpecifier::platform},
      {0x100000, &QM_FontSpecifier::windowsFullName}};
  for (const auto& [asked, unused] : rows) {
    const QM_FontSpecifier face = Create(path, asked)->at(0);
    EXPECT_EQ(face.attributes, asked);
    for (const auto& [bit, field] : rows) EXPECT_EQ((face.*field).empty(), bit != asked) << asked;
  }
}

// Whether the data fork alone counts is decided by the platform, which is known only when asked for.
TEST_F(CreationTest, ChecksumDependsOnThePlatformAskedFor) {
  const std::string font = Font(u"A").Build();
  const std::string fork = ResourceForkBuilder().Add(FourCharCode("vers"), 1, "1.0").Build();
  const std::string path = folder_.Write("a.ttf", font);
  folder_.Write("._a.ttf", AppleDoubleBuilder().ResourceFork(fork).Build());
  const QM_FontSpecifier with = Create(path)->at(0);
  EXPECT_EQ(with.family.str(), "Quill") << "trimmed";
  EXPECT_EQ(with.checksum, Crc(font));
  EXPECT_EQ(with.legacyChecksum, Crc(font + fork));
  EXPECT_EQ(with.outlineFileSize, font.size() + fork.size());
  EXPECT_EQ(Create(path, 0x1)->at(0).checksum, Crc(font + fork));
}

TEST_F(CreationTest, ReadsTheFacesOfACollection) {
  const SfntBuilder kerned =
      Font(u"C").Table("kern", big_endian::U32(3) + big_endian::U32(4)).Table("more", "behind it");
  const std::string bytes = CollectionBuilder()
                                .Face(Font(u"A"))
                                .Face(SfntBuilder::CrossPlatform())  // without names
                                .Face(kerned)
                                .Face(Font(u"a"))
                                .Face(Font(u"A").Table("more", "another face"))
                                .Trailer(std::string(2000, '.'))
                                .Build();
  const std::string path = folder_.Write("a.TTC", bytes);
  const OwnedArray array = Create(path);
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("A", "C", "a"));
  const QM_FontSpecifier face = array->at(1);
  EXPECT_EQ(face.kerningChecksum, 7u);
  EXPECT_EQ(face.legacyChecksum | face.outlineFileSize, 0u);
  const OwnedArray bare = Create(path, 0);
  ASSERT_EQ(bare->size(), 1u) << "faces without a name are duplicates";
  EXPECT_EQ(bare->at(0).kind.str(), "TrueType Collection") << "whatever was asked for";
  EXPECT_EQ(bare->at(0).platform.str(), "crossplatform");
}

TEST_F(CreationTest, ReadsEveryStyleOfEveryFond) {
  ResourceForkBuilder fork;
  const auto add_fond = [&fork](std::int16_t id, std::int16_t styles) {
    FondBuilder fond(id);
    for (std::int16_t style = 0; style < styles; ++style) {
      const auto font_id = static_cast<std::int16_t>(id + style);
      fond.Association(0, style, font_id);
      const std::string digits = std::to_string(font_id);
      fork.Add(FourCharCode("sfnt"), font_id,
               Font(u"F" + std::u16string(digits.begin(), digits.end())).Build());
    }
    fork.Add(FourCharCode("FOND"), id, fond.Kerning(1, {{'A', 'V', -50}}).Build(), "Quill");
  };
  add_fond(200, 3);
  add_fond(300, 2);
  const OwnedArray array = Create(folder_.Write("a.dfont", fork.Build()));
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("F200", "F201", "F202", "F300", "F301"));
  for (std::size_t i = 0; i < array->size(); ++i) {
    const QM_FontSpecifier face = array->at(i);
    EXPECT_EQ(face.postScriptName.str(), "F" + std::to_string(face.firstResourceID));
    EXPECT_EQ(face.firstResourceID, face.fondResourceID + face.style);
    EXPECT_EQ(face.platform.str(), "mac");
    EXPECT_EQ(face.kerningChecksum != 0, face.style == 1) << "the FOND's, for the style that it kerns";
  }
}

// The second family's face goes again, as a duplicate. Its PostScript name has a file name from then on,
// which the third one, of a script whose names are made by another rule, finds.
TEST_F(CreationTest, KeepsThePrinterFileNamesOfDuplicates) {
  const std::string outline = FondBuilder(128).Association(0, 0, 600).Build();
  const std::string bitmap = FondBuilder(129).StyleString("Nib").Association(12, 0, 600).Build();
  const std::string japanese =
      FondBuilder(16400).StyleString("Nib").International(0, 1).Association(12, 0, 500).Build();
  ResourceForkBuilder fork;
  fork.Add(FourCharCode("NFNT"), 500, "bits").Add(FourCharCode("sfnt"), 600, Font(u"Outline").Build());
  fork.Add(FourCharCode("FOND"), 128, outline, "A").Add(FourCharCode("FOND"), 129, bitmap, "B");
  fork.Add(FourCharCode("FOND"), 130, japanese, "C");
  const std::string nib = folder_.Write("Nib", "%!PS /FontName /Nib def");

  const OwnedArray array = Create(folder_.Write("fonts", fork.Build()));
  ASSERT_TRUE(array);
  ASSERT_THAT(Names(*array), ElementsAre("Outline", "Nib"));
  EXPECT_EQ(array->view(1).fondResourceID, 130);
  EXPECT_EQ(array->view(1).outlineFileName.str(), nib);
}

// A suitcase whose bitmaps go with PostScript printer fonts beside it; the second one is missing.
TEST_F(CreationTest, CarriesTheOutlineFilesCodesOnToTheNextFace) {
  const FondBuilder fond = FondBuilder(128)
                               .Association(12, 0, 500)
                               .Association(12, 1, 501)
                               .StyleString("Quill")
                               .StyleString("\x03")
                               .StyleString("-Bold")
                               .StyleIndex(1, 2);
  const std::string suitcase = ResourceForkBuilder()
                                   .Add(FourCharCode("NFNT"), 500, std::string(30, 'b'))
                                   .Add(FourCharCode("FOND"), 128, fond.Build(), "Quill")
                                   .Build();
  const std::string path = folder_.Write("Suitcase", "");
  folder_.Write("._Suitcase", AppleDoubleBuilder().ResourceFork(suitcase).FinderInfo("FFIL", "DMOV").Build());
  const std::string post =
      ResourceForkBuilder().Add(FourCharCode("POST"), 501, "\x01 /FullName (Quill) readonly def\r").Build();
  const std::string printer = folder_.Write("Quill", "data");
  folder_.Write("._Quill", AppleDoubleBuilder().ResourceFork(post).FinderInfo("LWFN", "ASPF").Build());
  const OwnedArray array = Create(path);
  ASSERT_TRUE(array);
  ASSERT_EQ(array->size(), 2u);
  const QM_FontSpecifier plain = array->at(0);
  EXPECT_EQ(plain.outlineFileName.str(), printer);
  EXPECT_EQ(plain.outlineFileSize, 4 + post.size()) << "both forks of the printer font";
  EXPECT_EQ(plain.fileCreator, FourCharCode("DMOV"));
  EXPECT_EQ(plain.outlineFileCreator, FourCharCode("ASPF"));
  const QM_FontSpecifier bold = array->at(1);
  EXPECT_EQ(bold.fileCreator, FourCharCode("ASPF"));
  EXPECT_EQ(bold.outlineFileCreator, 0u);
}

// It gets one pass, in which the outline of ID -1 stands for the one that no entry names.
TEST_F(CreationTest, ReadsAFondWithoutStyles) {
  ResourceForkBuilder fork;
  fork.Add(FourCharCode("FOND"), 128, FondBuilder(128).Build(), "Quill");
  fork.Add(FourCharCode("sfnt"), -1, Font(u"A").Build());
  const OwnedArray array = Create(folder_.Write("a.dfont", fork.Build()));
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("A"));
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
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("One-", "Two-", "Six-"));
}

// Every sound file cut at every length, and with every header byte at its extremes.
TEST_F(CreationTest, SurvivesDamagedFiles) {
  const std::string font = Font(u"A").Build();
  const std::string collection = CollectionBuilder().Face(Font(u"A")).Face(Font(u"B")).Build();
  const std::string fond = FondBuilder(128).Association(0, 0, 200).Build();
  const std::string resources =
      ResourceForkBuilder().Add(FourCharCode("sfnt"), 200, font).Add(FourCharCode("FOND"), 128, fond).Build();
  for (const auto& [name, bytes] :
       {std::pair{"a.ttf", font}, {"a.otf", font}, {"a.ttc", collection}, {"a.dfont", resources}}) {
    const auto create = [path = "/" + std::string(name)](const std::string& damaged) {
      const std::map<std::string, std::string> files = {{path, damaged}};
      return CreateFaces(MemoryFiles(files), path, QM_ATTRIBUTES_ALL).faces.size() > 0;
    };
    ASSERT_TRUE(create(bytes)) << name;
    for (std::size_t at = 0; at < bytes.size(); at += at < 400 ? 1 : 7) {
      create(bytes.substr(0, at));
      for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
        if (at < 300) create(std::string(bytes).replace(at, 1, 1, value));
      }
    }
  }
}

}  // namespace
}  // namespace quillmark
