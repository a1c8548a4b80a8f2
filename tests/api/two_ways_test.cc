// One answer, reached in two ways: they must agree.
#include <gtest/gtest.h>

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

// A suitcase of two real fonts; the places that keep a resource fork are those of
// tests/platform/forks_test.cc.
TEST(TwoWays, AnOutlineOfASuitcaseAndTheSameFontAlone) {
  const std::string fond =
      FondBuilder(1000).Association(0, 0, 128).Association(0, 1, 129).Kerning(1, {{1, 2, -3}}).Build();
  const std::string fork = ResourceForkBuilder()
                               .Add(FourCharCode("FOND"), 1000, fond, "DejaVu Sans Mono")
                               .Add(FourCharCode("sfnt"), 128, ReadFile(kRegular))
                               .Add(FourCharCode("sfnt"), 129, ReadFile(kBold))
                               .Build();
  const TempFolder folder;
  const OwnedArray dfont = Create(folder.Write("a.dfont", fork));
  ASSERT_TRUE(dfont);
  ASSERT_EQ(dfont->size(), 2u);
  // One outline and no kerning of its style: the checksum is that of the font file.
  ExpectSameNames(dfont->view(0), Create(kRegular)->at(0));
  EXPECT_EQ(dfont->view(1).postScriptName.str(), "DejaVuSansMono-Bold");
  EXPECT_EQ(dfont->view(1).style, 1);
  EXPECT_NE(dfont->view(1).kerningChecksum, 0u);
  for (std::size_t i = 0; i < 2; ++i) {  // in a file of its own each is "OpenType - TT" and "crossplatform"
    EXPECT_EQ(dfont->view(i).kind.str(), "TrueType");
    EXPECT_EQ(dfont->view(i).platform.str(), "mac");
  }
  std::uint32_t index = 7;
  EXPECT_EQ(QM_GetFontIndexForFONDResourceID(dfont.get(), 1000, 1, &index), 0);
  EXPECT_EQ(index, 1u);

  folder.Write("__MACOSX/zip/in/._F",
               AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork(fork).Build());
  const OwnedArray unzipped = Create(folder.Write("zip/in/F", ""));
  ASSERT_TRUE(unzipped);
  ASSERT_EQ(unzipped->size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) ExpectSameNames(unzipped->view(i), dfont->view(i));
}

TEST(TwoWays, EitherStoredFormGivesZerosForWhatItDoesNotKeep) {
  const OwnedArray xml = ReadBack(QM_CreateSpecifierFromXML, "<FontData><Family>A</Family></FontData>", 0);
  const OwnedArray list = ReadBack(QM_CreateSpecifierFromPropertyList,
                                   "<array><dict><key>Family</key><string>A</string></dict></array>", 0);
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
