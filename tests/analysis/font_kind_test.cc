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
  return bytes.replace(notice_at, notice.size(), notice);
}

TEST(FontKind, IsDecidedByExtensionAndThenByFirstBytes) {
  const std::string otto = "OTTO and more";
  const struct {
    const char* name;
    std::string bytes;
    const char* kind;
  } rows[] = {
      {"a.ttf", otto, "TrueType"},
      {"a.otf", otto, "OpenType - PS"},
      {"b.otf", "true and more", "OpenType - TT"},
      {"a.ps", "", "PostScript"},
      {"a.pfm", "", "PostScript"},
      {"a.ttc", "", "TrueType Collection"},
      {"a.mmm", "", "PostScript - MM"},
      {"a.DFont", "", "TrueType"},
      {"a.fot", otto, ""},
      {"a.fnt", otto, ""},
      {"a.fon", otto, ""},
      {"a.pfb", otto, ""},
      {"a.inf", otto, ""},
      {".ttf", otto, "TrueType"},
      {"a.ttf.b", otto, "OpenType - PS"},
      {"a.dfontx", otto, "OpenType - PS"},
      {"otto", otto, "OpenType - PS"},
      {"collection", "ttcf and more", ""},  // read in the host's order
      {"swapped", "fctt and more", "TrueType"},
      {"pfm", Pfm(3, "a CopyRight b"), "PostScript"},
      {"last place", Pfm(0, "copyright", 57), "PostScript"},
      {"one too far", Pfm(0, "copyright", 58), ""},
      {"one byte off", Pfm(3, "Copyright") + '\0', ""},
  };
  const TempFolder folder;
  for (const auto& row : rows) {
    const std::string path = folder.Write(row.name, row.bytes);
    const auto data = RegularFile::Open(path);
    EXPECT_STREQ(KindName(getMetaData_FontType(path, data, nullptr)), row.kind) << row.name;
  }
  const auto true_type = RegularFile::Open(folder.Write("a", std::string("\0\1\0\0", 4)));
  EXPECT_FALSE(has_otf_TrueType_Flag(true_type)) << "read in the host's order";
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
  for (const char* tag : {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE", "kern"}) {
    const std::string font = SfntBuilder().Table(tag, "").Table("last", "last").Build();
    const char* const kind = tag == std::string_view("kern") ? "TrueType" : "OpenType - TT";
    EXPECT_EQ(Collect(folder.Write("a.ttf", font)).kind_name.str(), kind) << tag;
  }
}

// Of a file whose bytes are looked at, it is told why they give no names.
TEST(CollectedFace, TakesNoDataFromHugeFiles) {
  const TempFolder folder;
  const std::string sparse = folder.Write("sparse.ttf", "");
  for (const auto& [length, is_looked_at] :
       {std::pair(0ull, false), {3, true}, {0xFFFFFFFE, true}, {0xFFFFFFFF, false}, {5ull << 30, false}}) {
    std::filesystem::resize_file(sparse, length);
    EXPECT_EQ(Collect(sparse).fault.has_value(), is_looked_at) << length;
  }
}

}  // namespace
}  // namespace quillmark
