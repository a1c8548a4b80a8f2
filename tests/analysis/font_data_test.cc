#include "analysis/font_data.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "analysis/font_kind.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

TEST(FontExtension, IsTheTextBehindTheLastDot) {
  const struct {
    const char* path;
    int code;
  } rows[] = {
      {"a.ttf", 0},    {"a.OTF", 1},       {"a.ps", 2},      {"a.DFont", 3},      {"a.TTC", 4},
      {"a.fot", 5},    {"a.fnt", 6},       {"a.fon", 7},     {"a.pfm", 8},        {"a.pfb", 9},
      {"a.mmm", 10},   {"a.inf", 11},      {"", 12},         {"ttf", 12},         {"a.", 12},
      {"a.ttc ", 12},  {"a.ttf2", 12},     {"a.woff2", 12},  {"a.dfontx", 12},    {".ttf", 0},
      {"a.ttf.b", 12}, {"d.ttf/name", 12}, {"a.otf.ttf", 0}, {"\xC3\xA9.ttf", 0},
  };
  for (const auto& row : rows) EXPECT_EQ(fontTypeFromExtension(row.path), row.code) << row.path;
}

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
      {"a.ps", otto, 3, "PostScript"},
      {"a.pfm", "", 3, "PostScript"},
      {"a.dfont", "", 0, "TrueType"},
      {"a.ttc", "", 5, "TrueType Collection"},
      {"a.mmm", "", 4, "PostScript - MM"},
      {"a.fon", otto, 6, ""},
      {"otto", otto, 2, "OpenType - PS"},
      {"true", true_type, 6, ""},
      {"collection", "ttcf and more", 6, ""},
      {"swapped", "fctt and more", 0, "TrueType"},
      {"pfm", Pfm(3, "a CopyRight b"), 3, "PostScript"},
      {"last place", Pfm(0, "copyright", 57), 3, "PostScript"},
      {"one too far", Pfm(0, "copyright", 58), 6, ""},
      {"one byte off", wrong_size, 6, ""},
      {"116 bytes", Pfm(0, "copyright").substr(0, 116), 6, ""},
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

TEST(FontData, OpensRegularFilesOnlyAndTakesNoDataFromHugeOnes) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo(folder.Path("fifo.ttf").c_str(), 0600), 0);
  for (const std::string& path : {folder.Path("missing.ttf"), folder.path(), folder.Path("fifo.ttf")}) {
    EXPECT_EQ(Load(path).second, 0u) << path;
  }
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

TEST(FontData, ALongPathIsKeptWholeAndOpenedCut) {
  const TempFolder folder;
  std::string path = folder.path();
  while (path.size() < 1023) path += "/";  // a path of the folder, as long as is kept
  path.replace(1023 - 5, 5, "f.ttf");
  folder.Write("f.ttf", "abcd");
  TFontData font;
  initializeAndConstructFontInfo(font, nullptr, path + "beyond the cut");
  EXPECT_EQ(font.filePath.str(), path + "beyond the cut");
  EXPECT_EQ(font.pathBytes, path);
  ASSERT_TRUE(font.stream);
  freeFontInfo(font);
  EXPECT_FALSE(font.stream);
}

}  // namespace
}  // namespace quillmark
