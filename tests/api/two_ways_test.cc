// One answer, reached in two ways: they must agree.
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <string>
#include <vector>

#include "analysis/collection.h"
#include "api/face_builder.h"
#include "api/font_array.h"
#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr const char* kCollection = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kRegular = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
constexpr const char* kBold = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf";

OwnedArray Create(const std::string& path) {
  QM_FontArray* array = nullptr;
  QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array);
  return OwnedArray(array);
}

void ExpectSameNames(const QM_FontSpecifier& a, const QM_FontSpecifier& b) {
  EXPECT_EQ(a.postScriptName.str(), b.postScriptName.str());
  EXPECT_EQ(a.family.str(), b.family.str());
  EXPECT_EQ(a.fullName.str(), b.fullName.str());
  EXPECT_EQ(a.displayName.str(), b.displayName.str());
  EXPECT_EQ(a.windowsFullName.str(), b.windowsFullName.str());
  EXPECT_EQ(a.foundry.str(), b.foundry.str());
  EXPECT_EQ(a.version.str(), b.version.str());
  EXPECT_EQ(a.checksum, b.checksum);
}

TEST(TwoWays, AFaceOfACollectionAndTheSameFontAlone) {
  const OwnedArray whole = Create(kCollection);
  ASSERT_TRUE(whole);
  ASSERT_EQ(whole->size(), 3u);
  const TempFolder folder;
  std::vector<std::string> written;
  ASSERT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(kCollection, folder.path(), written), kCollectionOk);
  ASSERT_EQ(written.size(), whole->size());
  for (std::size_t i = 0; i < written.size(); ++i) {
    const OwnedArray alone = Create(written[i]);
    ASSERT_TRUE(alone);
    ExpectSameNames(whole->view(i), alone->view(0));
    EXPECT_EQ(whole->view(i).platform.str(), alone->view(0).platform.str());
  }
}

// A suitcase of two real fonts, in each place that keeps a resource fork on Linux.
TEST(TwoWays, OneFontInEveryCarrier) {
  const std::string fond =
      FondBuilder(1000).Association(0, 0, 128).Association(0, 1, 129).Kerning(1, {{1, 2, -3}}).Build();
  const std::string fork = ResourceForkBuilder()
                               .Add(FourCharCode("FOND"), 1000, fond, "DejaVu Sans Mono")
                               .Add(FourCharCode("sfnt"), 128, ReadFile(kRegular))
                               .Add(FourCharCode("sfnt"), 129, ReadFile(kBold))
                               .Build();
  const std::string sidecar = AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork(fork).Build();

  const TempFolder folder;
  const OwnedArray expected = Create(folder.Write("a.dfont", fork));
  ASSERT_TRUE(expected);
  ASSERT_EQ(expected->size(), 2u);
  // One outline and no kerning of its style: the checksum is that of the font file.
  ExpectSameNames(expected->view(0), Create(kRegular)->at(0));
  EXPECT_EQ(expected->view(1).postScriptName.str(), "DejaVuSansMono-Bold");
  EXPECT_EQ(expected->view(1).style, 1);
  for (std::size_t i = 0; i < 2; ++i) {  // in a file of its own each is "OpenType - TT" and "crossplatform"
    EXPECT_EQ(expected->view(i).kind.str(), "TrueType");
    EXPECT_EQ(expected->view(i).platform.str(), "mac");
  }
  std::uint32_t index = 7;
  EXPECT_EQ(QM_GetFontIndexForFONDResourceID(expected.get(), 1000, 1, &index), 0);
  EXPECT_EQ(index, 1u);
  EXPECT_NE(expected->view(1).kerningChecksum, 0u);

  folder.Write("side/._F", sidecar);
  folder.Write("__MACOSX/zip/in/._F", sidecar);
  folder.Write("netatalk/.AppleDouble/F", sidecar);
  folder.Write("frk/resource.frk/F", fork);
  std::vector<std::string> paths;
  for (const char* name : {"side/F", "zip/in/F", "netatalk/F", "frk/F"})
    paths.push_back(folder.Write(name, ""));
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    const OwnedArray array = Create(path);
    ASSERT_TRUE(array);
    ASSERT_EQ(array->size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
      ExpectSameNames(array->view(i), expected->view(i));
      EXPECT_EQ(array->view(i).kerningChecksum, expected->view(i).kerningChecksum);
      EXPECT_EQ(array->view(i).fondResourceID, 1000);
      EXPECT_EQ(array->view(i).firstResourceID, expected->view(i).firstResourceID);
    }
  }

  // Attributes hold a few kilobytes at most: a fork of bitmaps that names a printer font, in both carriers.
  const std::string small =
      ResourceForkBuilder()
          .Add(FourCharCode("FOND"), 1000,
               FondBuilder(1000).Association(12, 0, 128).StyleString("Mono").Build(), "Mono")
          .Add(FourCharCode("NFNT"), 128, "bitmap")
          .Build();
  const std::string attributed = folder.Write("attribute/F", "");
  if (::setxattr(attributed.c_str(), "user.com.apple.ResourceFork", small.data(), small.size(), 0) != 0) {
    GTEST_SKIP() << "the file system keeps no extended attributes";
  }
  const OwnedArray from_attribute = Create(attributed);
  const OwnedArray from_data = Create(folder.Write("attribute/data", small));
  ASSERT_TRUE(from_attribute && from_data);
  ExpectSameNames(from_attribute->view(0), from_data->view(0));
  EXPECT_EQ(from_attribute->view(0).postScriptName.str(), "Mono");
}

TEST(TwoWays, TheRecordAndTheGetters) {
  const OwnedArray array = Create(kBold);
  ASSERT_TRUE(array);
  const QM_FontSpecifier& face = array->view(0);
  const auto text = [&](auto get) {
    char buffer[1024];
    return get(array.get(), 0, buffer, static_cast<std::int32_t>(sizeof buffer)) == 0 ? std::string(buffer)
                                                                                      : "failed";
  };
  const auto number = [&](auto get) {
    std::uint32_t value = 0;
    EXPECT_EQ(get(array.get(), 0, &value), 0);
    return value;
  };
  EXPECT_EQ(text(QM_GetPostScriptName), face.postScriptName.str());
  EXPECT_EQ(text(QM_GetFamilyName), face.family.str());
  EXPECT_EQ(text(QM_GetFullName), face.fullName.str());
  EXPECT_EQ(text(QM_GetDisplayName), face.displayName.str());
  EXPECT_EQ(text(QM_GetWindowsFullName), face.windowsFullName.str());
  EXPECT_EQ(text(QM_GetKindName), face.kind.str());
  EXPECT_EQ(text(QM_GetPlatform), face.platform.str());
  EXPECT_EQ(text(QM_GetPrinterFont), face.outlineFileName.str());
  EXPECT_EQ(number(QM_GetQuillmarkChecksum), face.checksum);
  EXPECT_EQ(number(QM_GetLegacyQuillmarkChecksum), face.legacyChecksum);
  EXPECT_EQ(number(QM_GetKerningChecksum), face.kerningChecksum);
  EXPECT_EQ(number(QM_GetOutlineFileSize), face.outlineFileSize);
}

TEST(TwoWays, EitherStoredFormGivesZerosForWhatItDoesNotKeep) {
  QM_FontArray* made = nullptr;
  ASSERT_EQ(QM_CreateSpecifierFromXML("<FontData><Family>A</Family></FontData>", &made), 0);
  const OwnedArray xml(made);
  ASSERT_EQ(QM_CreateSpecifierFromPropertyList(
                "<array><dict><key>Family</key><string>A</string></dict></array>", &made),
            0);
  const OwnedArray list(made);
  for (const OwnedArray* array : {&xml, &list}) {
    const QM_FontSpecifier& face = (*array)->view(0);
    EXPECT_EQ(face.attributes, static_cast<std::uint32_t>(QM_ATTRIBUTE_FAMILY));
    EXPECT_EQ(face.style, 0);
    EXPECT_EQ(face.firstResourceID, 0);
    EXPECT_EQ(face.fondResourceID, 0);
  }
}

}  // namespace
}  // namespace quillmark
