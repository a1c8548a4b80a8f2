#include "analysis/font_kind.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "analysis/face_collector.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

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
    const std::string path = folder.Write(row.name, row.bytes);
    const auto data = RegularFile::Open(path);
    const FontKind kind = getMetaData_FontType(path, data, nullptr);
    EXPECT_EQ(kind, row.kind);
    EXPECT_STREQ(KindName(kind), row.kind_name);
    EXPECT_FALSE(has_otf_TrueType_Flag(data)) << "read in the host's order";
  }
}

CollectedFace Collect(const std::string& path) {
  FileAccess access;
  FontFile file(access, path);
  CollectedFace face;
  static_cast<void>(CollectMetaData(file, nullptr, QM_ATTRIBUTES_ALL, face));
  return face;
}

TEST(CollectedFace, LayoutTablesMakeATrueTypeFontOpenType) {
  const TempFolder folder;
  for (const char* tag : {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE"}) {
    const std::string font = SfntBuilder().Table(tag, "").Table("last", "last").Build();
    EXPECT_EQ(Collect(folder.Write("a.ttf", font)).kind_name.str(), "OpenType - TT") << tag;
  }
  EXPECT_EQ(Collect(folder.Write("a.ttf", SfntBuilder::CrossPlatform().Build())).kind_name.str(), "TrueType");
}

// Of a file whose bytes are looked at, it is told why they give no names.
TEST(CollectedFace, TakesNoDataFromHugeFiles) {
  const TempFolder folder;
  const std::string sparse = folder.Write("sparse.ttf", "");
  for (const auto& [length, is_looked_at] : {std::pair<std::uint64_t, bool>{0, false},
                                             {3, true},
                                             {0xFFFFFFFEu, true},
                                             {0xFFFFFFFFu, false},
                                             {5ull << 30, false}}) {
    std::filesystem::resize_file(sparse, length);
    EXPECT_EQ(Collect(sparse).fault.has_value(), is_looked_at) << length;
  }
}

}  // namespace
}  // namespace quillmark
