#include "analysis/postscript_metadata.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

using std::string_literals::operator""s;

// A family of bitmaps, whose printer font file is QuillBol.
const std::string kBitmaps = FondBuilder(128).Association(9, 0, 5).StyleString("Quill-Bold").Build();

// A suitcase with one family, and what its style 0 gathers.
class Suitcase {
 public:
  explicit Suitcase(const std::string& resource_name, const std::string& fond = kBitmaps,
                    ResourceForkBuilder fork = {})
      : path_(folder.Write("Suitcase", fork.Add(kFond, 128, fond, resource_name).Build())) {}

  // A printer font file of POST resources, the first of which is 501.
  void AddPosts(std::initializer_list<std::string> posts, std::int16_t id = 501) const {
    ResourceForkBuilder fork;
    for (const std::string& post : posts) fork.Add(kPost, id++, post);
    folder.Write("QuillBol", "");
    folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork(fork.Build()).Build());
  }
  CollectedFace Collect(CollectStatus expected) const {
    FileAccess access;
    PrinterFonts printer_fonts(access, QM_ATTRIBUTES_ALL);
    const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(path_, true));
    Family family(file.get(), getHandleOfTypeAndResID(file.get(), kFond, 128));
    CollectedFace face;
    EXPECT_EQ(CollectPSMetaData(*file, family, 0, QM_ATTRIBUTES_ALL, printer_fonts, face), expected);
    return face;
  }

  const TempFolder folder;

 private:
  const std::string path_;
};

TEST(PostScriptMetadata, ReadsTheFirstTwoSegments) {
  const std::string full_segment = "\1 /FamilyName (Second) " + std::string(2048, ' ');
  const struct {
    std::string first;
    std::string second;
    const char* names;
  } rows[] = {
      {"\1 /FamilyName (First)", "\1 /FamilyName (Second)", "Second|Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2048), "First|Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2047), "Second|Quill-Bold"},
      {full_segment.substr(0, 2048), "", "Second|Quill-Bold"},
      {"", "\1 /FamilyName (Second)", "|Quill-Bold"},
      {"\1 /FontName (Quill [Roman]) def", "\1 ", "Suitcase|Quill--Roman-"},
      {"\1 /FontName (Qu\xE9ll) def", "", "Suitcase|Quill-Bold"},  // not UTF-8
  };
  for (const auto& row : rows) {
    const Suitcase family("Qq");
    family.AddPosts({row.first, row.second, "\1 /FamilyName (Third) /FontName /Third "});
    const FaceNames names = family.Collect(kCollected).names;
    EXPECT_EQ(names.family.str() + "|" + names.post_script_name.str(), row.names) << row.first;
    EXPECT_EQ(names.display_name.str(), "Qq") << "the screen fonts' own name stands";
  }
}

TEST(PostScriptMetadata, TellsKindsAndDisplayNames) {
  const auto cid_family = [](std::int16_t size) {
    return FondBuilder(0x4000).Association(size, 0, 7).StyleString("Quill-Light-H-X").Build();
  };
  const auto other_family = [](std::int16_t script) {
    return FondBuilder(128).International(0, script).Association(0, 1, 6).Association(0, 0, 7).Build();
  };
  const auto outline = [](const char* bytes) { return ResourceForkBuilder().Add(kSfnt, 7, bytes); };
  const struct {
    std::string resource_name;
    std::string fond;
    ResourceForkBuilder fork;
    const char* shown;     // kind and display name
    CollectStatus status;  // kNoPostScriptHeader: an outline inside the file needs no printer file
  } rows[] = {
      {"Caf\x8E", kBitmaps, {}, "|Caf\xC3\xA9", kPrinterFontMissing},
      {"MyriaMM_400", kBitmaps, {}, "PostScript - MM|MyriaMM_400", kPrinterFontMissing},
      {"%MMyriadMM_400_600_", kBitmaps, {}, "PostScript - MM|MyriadMM", kPrinterFontMissing},
      // No "MM" before a "_": seen as a Multiple Master family only when its PostScript name is composed.
      {"%MQuill_1", kBitmaps, {}, "PostScript - MM|Quill", kPrinterFontMissing},
      {"%MQuill_1", other_family(0), outline("typ1"), "|%MQuill_1", kNoPostScriptHeader},
      {"Qq", cid_family(0), outline("typ1"), "CID|Qq", kNoPostScriptHeader},
      {"A-CID Qq", cid_family(0), outline("x"), "CID|A-CID Qq", kNoPostScriptHeader},
      {"Qq", cid_family(0), outline("true"), "|Qq", kNoPostScriptHeader},
      {"A-CID", cid_family(0), {}, "OCF|A-CID", kNoPostScriptHeader},
      {"Qq", other_family(1), outline("typ1"), "CID|Qq", kNoPostScriptHeader},
      {"Qq", cid_family(0).substr(0, 59), {}, "OCF|Qq", kNoPostScriptHeader},  // no name of a file
      {"Qq", cid_family(0).substr(0, 51), {}, "|Qq", kNoPostScriptHeader},
      {"A-CID MM_", cid_family(0), outline("typ1"), "PostScript - MM|A-CID MM_", kNoPostScriptHeader},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.resource_name + " " + row.shown);
    const CollectedFace face = Suitcase(row.resource_name, row.fond, row.fork).Collect(row.status);
    EXPECT_EQ(face.kind_name.str() + "|" + face.names.display_name.str(), row.shown);
  }
}

TEST(PostScriptMetadata, FallsBackToTheDataFork) {
  const Suitcase family("Qq");
  const std::string path = family.folder.Path("QuillBol");
  const CollectedFace missing = family.Collect(kPrinterFontMissing);
  EXPECT_EQ(missing.printer_font_path, path);
  EXPECT_EQ(missing.names.post_script_name.str(), "Quill-Bold");
  // Only the beginning is read, and zero bytes end values but not the search.
  family.folder.Write("QuillBol", "\0/FamilyName (Fa\0mily)"s + std::string(5980, ' ') + "/Version (1)");
  const FaceNames names = family.Collect(kCollected).names;
  EXPECT_EQ(names.family.str() + "|" + names.version.str(), "Fa|");
  family.AddPosts({"\1 /FamilyName (Second)"}, 502);  // a map without a first segment
  EXPECT_EQ(family.Collect(kCollected).kind_name.str(), "");
  family.folder.Write("QuillBol", "/FontName /Data def");
  EXPECT_EQ(family.Collect(kCollected).names.display_name.str(), "Data") << "read after it was set";
  std::filesystem::remove(path);
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  family.Collect(kPrinterFontMissing);
}

TEST(PostScriptMetadata, APrinterFontIsReadOnceForAllThatNameIt) {
  const TempFolder folder;
  const std::string path = folder.Write("QuillBol", "/FamilyName (Data)");
  FileAccess access;
  PrinterFonts printer_fonts(access, QM_ATTRIBUTES_ALL);
  const PrinterFont& first = printer_fonts.At(path);
  std::filesystem::remove(path);
  EXPECT_EQ(&printer_fonts.At(path), &first);
  EXPECT_TRUE(first.is_file && first.data_fork);
}

TEST(PostScriptMetadata, MakesNoPathOfANameThatHoldsASlash) {
  // In a double-byte family the file's name is what stands before the second hyphen.
  Suitcase family("Qq", FondBuilder(0x4000).Association(9, 0, 7).StyleString("sub/secret-Light-H").Build());
  family.folder.Write("sub/secret-Light", "/FamilyName (Secret)");
  EXPECT_EQ(family.Collect(kNoPostScriptHeader).printer_font_path, "");
}

}  // namespace
}  // namespace quillmark
