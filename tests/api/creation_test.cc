#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <filesystem>
#include <string>

#include "api/face_builder.h"
#include "builders/apple_double_builder.h"
#include "builders/big_endian.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using ::testing::ElementsAre;

OwnedArray Create(const std::string& path, std::uint32_t request = QM_ATTRIBUTES_ALL) {
  QM_FontArray* array = nullptr;
  QM_CreateSpecifier(path.c_str(), 0, request, &array);
  return OwnedArray(array);
}

SfntBuilder Font(std::u16string_view full_name) {
  return SfntBuilder::CrossPlatform().WindowsName(1, u"Quill").WindowsName(4, full_name);
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

class Creation : public ::testing::Test {
 protected:
  TempFolder folder_;
};

TEST_F(Creation, AnswersOneWithoutAFace) {
  ASSERT_EQ(mkfifo(folder_.Path("fifo.ttf").c_str(), 0600), 0);
  QM_FontArray untouched;
  for (const std::string& path :
       {folder_.Path("missing.ttf"), folder_.Path("missing.ttc"), folder_.path(), folder_.Path("fifo.ttf"),
        folder_.Write("empty.otf", ""), folder_.Write("empty.ttc", ""), folder_.Write("text.ps", "%!PS"),
        folder_.Write("nameless.ttf", SfntBuilder::CrossPlatform().Build()), std::string(5000, 'x')}) {
    QM_FontArray* array = &untouched;
    EXPECT_EQ(QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array), 1) << path;
    EXPECT_EQ(array, &untouched) << path;
  }
  QM_FontArray* array = &untouched;
  EXPECT_EQ(QM_CreateSpecifier(nullptr, 0, 0, &array), 1);
  EXPECT_EQ(QM_CreateSpecifier("x", 0, 0, nullptr), 1);
}

TEST_F(Creation, ReadsAnOrdinaryFontFile) {
  const std::string font = Font(u"Quill Sans").Table("kern", "12345678").Build();
  const OwnedArray array = Create(folder_.Write("a.ttf", font));
  ASSERT_TRUE(array);
  ASSERT_EQ(array->size(), 1u);
  const QM_FontSpecifier face = array->at(0);
  EXPECT_EQ(face.postScriptName.str(), "Quill-Sans");
  EXPECT_EQ(face.displayName.str(), "Quill Sans");
  EXPECT_EQ(face.family.str(), "Quill");
  EXPECT_EQ(face.kind.str(), "TrueType");
  EXPECT_EQ(face.platform.str(), "crossplatform");
  EXPECT_EQ(face.style, 0);
  EXPECT_EQ(face.firstResourceID, -1);
  EXPECT_EQ(face.fondResourceID, -1);
  EXPECT_EQ(face.kerningChecksum, 0u) << "that of a FOND, not the kern table's";
  EXPECT_EQ(face.outlineFileSize, font.size());
  EXPECT_EQ(face.checksum, Crc(font));
  EXPECT_EQ(face.attributes, static_cast<std::uint32_t>(QM_ATTRIBUTES_ALL));
}

TEST_F(Creation, ReadsAPathThatIsNotUtf8) {
  const OwnedArray array = Create(folder_.Write("\xFF.ttf", Font(u"A").Build()));
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("A"));
}

TEST_F(Creation, GivesOnlyWhatWasAskedFor) {
  const std::string path = folder_.Write("a.ttf", Font(u"A").Build());
  const struct {
    std::uint32_t bit;
    OmString QM_FontSpecifier::*field;
  } rows[] = {{0x1, &QM_FontSpecifier::postScriptName},      {0x2, &QM_FontSpecifier::kind},
              {0x1000, &QM_FontSpecifier::family},           {0x8000, &QM_FontSpecifier::displayName},
              {0x10000, &QM_FontSpecifier::fullName},        {0x40000, &QM_FontSpecifier::platform},
              {0x100000, &QM_FontSpecifier::windowsFullName}};
  for (const auto& asked : rows) {
    const QM_FontSpecifier face = Create(path, asked.bit)->at(0);
    EXPECT_EQ(face.attributes, asked.bit);
    for (const auto& row : rows) EXPECT_EQ((face.*row.field).empty(), row.bit != asked.bit) << asked.bit;
  }
}

// Whether the data fork alone counts is decided by the platform, which is known only when asked for.
TEST_F(Creation, ChecksumDependsOnThePlatformAskedFor) {
  const std::string font = Font(u"A").Build();
  const std::string fork = ResourceForkBuilder().Add(FourCharCode("vers"), 1, "1.0").Build();
  const std::string path = folder_.Write("a.ttf", font);
  folder_.Write("._a.ttf", AppleDoubleBuilder().ResourceFork(fork).FinderInfo("sfnt", "QUIL").Build());
  const QM_FontSpecifier with = Create(path)->at(0);
  EXPECT_EQ(with.checksum, Crc(font));
  EXPECT_EQ(with.legacyChecksum, Crc(font + fork));
  EXPECT_EQ(with.outlineFileSize, font.size() + fork.size());
  EXPECT_EQ(with.fileType, FourCharCode("sfnt"));
  EXPECT_EQ(with.fileCreator, FourCharCode("QUIL"));
  EXPECT_EQ(with.outlineFileCreator, 0u);
  EXPECT_EQ(Create(path, 0x1)->at(0).checksum, Crc(font + fork));
}

TEST_F(Creation, ReadsTheFacesOfACollection) {
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
  EXPECT_EQ(face.kind.str(), "TrueType Collection");
  EXPECT_EQ(face.platform.str(), "crossplatform");
  EXPECT_EQ(face.kerningChecksum, 7u);
  EXPECT_NE(face.checksum, 0u);
  EXPECT_EQ(face.legacyChecksum | face.outlineFileSize | face.fileType | face.fileCreator, 0u);
  EXPECT_EQ(face.style, -1);
  EXPECT_EQ(face.firstResourceID, -1);

  const OwnedArray bare = Create(path, 0);
  ASSERT_EQ(bare->size(), 1u) << "faces without a name are duplicates";
  EXPECT_EQ(bare->at(0).kind.str(), "TrueType Collection");
  EXPECT_EQ(bare->at(0).platform.str(), "crossplatform");
  EXPECT_EQ(bare->at(0).checksum, array->at(0).checksum);
  EXPECT_EQ(Ask(QM_GetKindName, *bare), "status 5");
}

TEST_F(Creation, ReadsASharedDirectoryOnce) {
  CollectionBuilder builder;
  builder.Face(Font(u"A").Table("huge", std::string(500000, 'x')));
  for (int i = 0; i < 100000; ++i) builder.SameFaceAs(0);
  std::string bytes = builder.Build();
  big_endian::Set32(bytes, 8, 0xFFFFFFFF);  // and a count that no file could hold
  const OwnedArray array = Create(folder_.Write("a.ttc", bytes));
  ASSERT_TRUE(array);
  EXPECT_EQ(array->size(), 1u);
}

TEST_F(Creation, ReadsEveryStyleOfEveryFond) {
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
    fond.Kerning(1, {{'A', 'V', -50}});
    fork.Add(FourCharCode("FOND"), id, fond.Build(), "Quill");
  };
  add_fond(200, 3);
  add_fond(300, 2);
  const OwnedArray array = Create(folder_.Write("a.dfont", fork.Build()));
  ASSERT_TRUE(array);
  EXPECT_THAT(Names(*array), ElementsAre("F200", "F201", "F202", "F300", "F301"));
  for (std::size_t i = 0; i < array->size(); ++i) {
    const QM_FontSpecifier face = array->at(i);
    EXPECT_EQ(face.fondResourceID, i < 3 ? 200 : 300);
    EXPECT_EQ(face.style, static_cast<int>(i < 3 ? i : i - 3));
    EXPECT_EQ(face.firstResourceID, face.fondResourceID + face.style);
    EXPECT_EQ(face.kerningChecksum != 0, face.style == 1) << "the FOND's, for the style that it kerns";
    EXPECT_EQ(face.platform.str(), "mac");
  }
  std::uint32_t index = 0;
  EXPECT_EQ(QM_GetFontIndexForFONDResourceID(array.get(), 300, 1, &index), 0);
  EXPECT_EQ(index, 4u);
}

// A suitcase whose bitmaps go with PostScript printer fonts beside it; the second one is missing.
TEST_F(Creation, CarriesTheOutlineFilesCodesOnToTheNextFace) {
  const std::string suitcase = ResourceForkBuilder()
                                   .Add(FourCharCode("NFNT"), 500, std::string(30, 'b'))
                                   .Add(FourCharCode("NFNT"), 501, std::string(30, 'c'))
                                   .Add(FourCharCode("FOND"), 128,
                                        FondBuilder(128)
                                            .Association(12, 0, 500)
                                            .Association(12, 1, 501)
                                            .StyleString("Quill")
                                            .StyleString("\x03")
                                            .StyleString("-Bold")
                                            .StyleIndex(1, 2)
                                            .Build(),
                                        "Quill")
                                   .Build();
  const std::string path = folder_.Write("Suitcase", "");
  folder_.Write("._Suitcase", AppleDoubleBuilder().ResourceFork(suitcase).FinderInfo("FFIL", "DMOV").Build());
  const std::string program = "%!PS-AdobeFont-1.0: Quill\r/FullName (Quill) readonly def\r";
  const std::string printer = folder_.Write("Quill", "data");
  folder_.Write("._Quill",
                AppleDoubleBuilder()
                    .ResourceFork(ResourceForkBuilder()
                                      .Add(FourCharCode("POST"), 501, std::string("\x01\0", 2) + program)
                                      .Build())
                    .FinderInfo("LWFN", "ASPF")
                    .Build());
  const OwnedArray array = Create(path);
  ASSERT_TRUE(array);
  ASSERT_EQ(array->size(), 2u);
  const QM_FontSpecifier plain = array->at(0);
  EXPECT_EQ(plain.outlineFileName.str(), printer);
  EXPECT_GT(plain.outlineFileSize, 4u + program.size()) << "both forks of the printer font";
  EXPECT_EQ(plain.fileCreator, FourCharCode("DMOV"));
  EXPECT_EQ(plain.outlineFileCreator, FourCharCode("ASPF"));
  EXPECT_EQ(plain.outlineFileType, FourCharCode("LWFN"));
  const QM_FontSpecifier bold = array->at(1);
  EXPECT_EQ(bold.fileCreator, FourCharCode("ASPF"));
  EXPECT_EQ(bold.fileType, FourCharCode("LWFN"));
  EXPECT_EQ(bold.outlineFileCreator, 0u);
}

// Every sound file cut at every length, and with every header byte at its extremes.
TEST_F(Creation, SurvivesDamagedFiles) {
  const std::string font = Font(u"A").Build();
  const std::string collection = CollectionBuilder().Face(Font(u"A")).Face(Font(u"B")).Build();
  const std::string resources =
      ResourceForkBuilder()
          .Add(FourCharCode("sfnt"), 200, font)
          .Add(FourCharCode("FOND"), 128, FondBuilder(128).Association(0, 0, 200).Build())
          .Build();
  for (const auto& [name, bytes] :
       {std::pair{"a.ttf", font}, {"a.otf", font}, {"a.ttc", collection}, {"a.dfont", resources}}) {
    // A new file each time: some file systems write a truncated one out at once.
    const auto create = [this, name](const std::string& damaged) {
      const OwnedArray array = Create(folder_.Write(name, damaged));
      std::filesystem::remove(folder_.Path(name));
      return array != nullptr;
    };
    ASSERT_TRUE(create(bytes)) << name;
    for (std::size_t length = 0; length < bytes.size(); length += length < 400 ? 1 : 7) {
      create(bytes.substr(0, length));
    }
    for (std::size_t at = 0; at < std::min<std::size_t>(bytes.size(), 300); ++at) {
      for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
        std::string spoilt = bytes;
        spoilt[at] = value;
        create(spoilt);
      }
    }
  }
}

}  // namespace
}  // namespace quillmark
