#include "analysis/font_data.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "analysis/font_kind.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

// A PFM file: size field, copyright text, 117 bytes and `extra` more.
std::string Pfm(std::size_t extra, const std::string& notice, std::size_t notice_at = 6) {
  std::string bytes(117 + extra, '\0');
  bytes[2] = static_cast<char>(bytes.size());
  bytes.replace(notice_at, notice.size(), notice);
  return bytes;
}

TEST(FontKind, IsDecidedByExtensionAndThenByFirstBytes) {
  const std::string otto = "OTTO and more";
  const std::string true_type("\0\1\0\0 and more", 13);
  std::string wrong_size = Pfm(3, "Copyright");
  wrong_size += '\0';
  const struct {
    const char* name;
    std::string bytes;
    int kind;
    const char* kind_name;
  } rows[] = {
      {"a.ttf", otto, 0, "TrueType"},
      {"a.otf", otto, 2, "OpenType - PS"},
      {"b.otf", true_type, 1, "OpenType - TT"},
      {"a.pfm", "", 3, "PostScript"},
      {"a.ttc", "", 5, "TrueType Collection"},
      {"a.mmm", "", 4, "PostScript - MM"},
      {"a.DFont", "", 0, "TrueType"},
      {"a.pfb", otto, 6, ""},
      {".ttf", otto, 0, "TrueType"},
      {"a.ttf.b", otto, 2, "OpenType - PS"},
      {"a.dfontx", otto, 2, "OpenType - PS"},
      {"a.fon", otto, 6, ""},
      {"otto", otto, 2, "OpenType - PS"},
      {"collection", "ttcf and more", 6, ""},
      {"swapped", "fctt and more", 0, "TrueType"},
      {"pfm", Pfm(3, "a CopyRight b"), 3, "PostScript"},
      {"last place", Pfm(0, "copyright", 57), 3, "PostScript"},
      {"one too far", Pfm(0, "copyright", 58), 6, ""},
      {"one byte off", wrong_size, 6, ""},
  };
  const TempFolder folder;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    TFontData font;
    initializeAndConstructFontInfo(font, nullptr, folder.Write(row.name, row.bytes));
    OmString kind_name;
    getMetaData_FontType(font, nullptr, 0, &kind_name);
    EXPECT_EQ(font.fontKind, row.kind);
    EXPECT_EQ(kind_name.str(), row.kind_name);
    EXPECT_FALSE(has_otf_TrueType_Flag(font)) << "read in the host's order";
  }
}

// What loading makes of the file: its kind, and how many bytes it offers.
std::pair<FontKind, std::uint32_t> Load(const std::string& path) {
  TFontData font;
  initializeAndConstructFontInfo(font, nullptr, path);
  getMetaData_FontType(font, nullptr, 0, nullptr);
  EXPECT_EQ(loadFontDataIntoMemory(font, nullptr, 0), 0);
  return {font.fontKind, font.data ? font.data->size() : 0};
}

TEST(FontData, LayoutTablesMakeATrueTypeFontOpenType) {
  const TempFolder folder;
  for (const char* tag : {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE"}) {
    const std::string font = SfntBuilder().Table(tag, "").Table("last", "last").Build();
    EXPECT_EQ(Load(folder.Write("a.ttf", font)).first, kKindOpenTypeTT) << tag;
    EXPECT_EQ(Load(folder.Write("a.ps", font)).first, kKindPostScript) << tag;
  }
  EXPECT_EQ(Load(folder.Write("a.ttf", SfntBuilder::CrossPlatform().Build())).first, kKindTrueType);
}

TEST(FontData, TakesNoDataFromHugeFiles) {
  const TempFolder folder;
  const std::string sparse = folder.Write("sparse.ttf", "");
  for (const auto& [length, expected] : {std::pair<std::uint64_t, std::uint32_t>{0, 0},
                                         {3, 3},
                                         {0xFFFFFFFEu, 0xFFFFFFFEu},
                                         {0xFFFFFFFFu, 0},
                                         {5ull << 30, 0}}) {
    std::filesystem::resize_file(sparse, length);
    EXPECT_EQ(Load(sparse).second, expected) << length;
  }
}

}  // namespace
}  // namespace quillmark
