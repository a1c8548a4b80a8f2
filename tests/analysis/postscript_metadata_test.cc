#include "analysis/postscript_metadata.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "builders/type1_builder.h"
#include "quillmark/quillmark.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

using std::string_literals::operator""s;

constexpr std::uint32_t kPost = FourCharCode("POST");
constexpr std::uint32_t kSfnt = FourCharCode("sfnt");

// A family of bitmaps whose plain style composes `post_script_name`.
FondBuilder BitmapFamily(const std::string& post_script_name) {
  return FondBuilder(128).Association(9, 0, 5).StyleString(post_script_name);
}

// An open suitcase with one family, and what its style 0 gathers.
class Suitcase {
 public:
  explicit Suitcase(const std::string& resource_name,
                    const std::string& fond = BitmapFamily("Quill-Bold").Build(),
                    ResourceForkBuilder fork = ResourceForkBuilder())
      : file_(QuillmarkResourceFile::initWithFile(
            folder.Write("Suitcase", fork.Add(FourCharCode("FOND"), 128, fond, resource_name).Build()),
            true)),
        family_(file_.get(), getHandleOfTypeAndResID(file_.get(), FourCharCode("FOND"), 128)) {}

  // A printer font file of a resource fork alone.
  void AddPrinterFile(const std::string& name, const ResourceForkBuilder& fork) const {
    folder.Write(name, "");
    folder.Write("._" + name, AppleDoubleBuilder().ResourceFork(fork.Build()).Build());
  }
  CollectedFace Collect(CollectStatus expected) {
    FileAccess access;
    PrinterFonts printer_fonts(access, QM_ATTRIBUTES_ALL);
    CollectedFace face;
    EXPECT_EQ(CollectPSMetaData(*file_.get(), family_, 0, QM_ATTRIBUTES_ALL, printer_fonts, face), expected);
    return face;
  }

  const TempFolder folder;

 private:
  ResourceFileHolder file_;
  Family family_;
};

// The value of a key in the font's metrics file, which its maker wrote beside the program.
std::string MetricsValue(const std::string& metrics, const std::string& key) {
  const std::size_t line = metrics.find("\n" + key + " ");
  if (line == std::string::npos) return "";
  const std::size_t value = line + key.size() + 2;
  return metrics.substr(value, metrics.find_first_of("\r\n", value) - value);
}

TEST(PostScriptMetadata, ReadsRealPrinterFonts) {
  int fonts = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/usr/share/fonts/type1/urw-base35")) {
    std::filesystem::path path = entry.path();
    if (path.extension() != ".t1") continue;
    ++fonts;
    const std::string program = ReadFile(path);
    const std::string metrics = ReadFile(path.replace_extension(".afm"));
    const std::string post_script = MetricsValue(metrics, "FontName");
    Suitcase family("Screen Name", BitmapFamily(post_script).Build());
    const std::string printer_file =
        std::filesystem::path(family.Collect(kPrinterFontMissing).printer_font_path).filename().string();

    ResourceForkBuilder fork;
    AddPostResources(fork, PostSegments(program));
    family.AddPrinterFile(printer_file, fork);
    for (const bool in_data_fork : {false, true}) {
      if (in_data_fork) {
        std::filesystem::remove(family.folder.Path("._" + printer_file));
        family.folder.Write(printer_file, program);
      }
      const FaceNames names = family.Collect(kCollected).names;
      EXPECT_EQ(names.family.str(), MetricsValue(metrics, "FamilyName")) << path;
      EXPECT_EQ(names.post_script_name.str(), post_script) << path;
      EXPECT_EQ(names.version.str(), MetricsValue(metrics, "Version")) << path;
      EXPECT_EQ(names.foundry.str(), MetricsValue(metrics, "Notice")) << path;
      // Resources leave the screen fonts' own name standing; the data fork is read after it was set.
      EXPECT_EQ(names.display_name.str(), in_data_fork ? post_script : "Screen Name") << path;
    }
  }
  EXPECT_EQ(fonts, 35) << "fonts-urw-base35 is not installed";
}

TEST(PostScriptMetadata, ReadsTheFirstTwoSegments) {
  const std::string full_segment = "\1 /FamilyName (Second) " + std::string(2048, ' ');
  const struct {
    std::string first;
    std::string second;
    const char* family;
    const char* post_script;
  } rows[] = {
      {"\1 /FamilyName (First)", "\1 /FamilyName (Second)", "Second", "Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2048), "First", "Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2047), "Second", "Quill-Bold"},
      {full_segment.substr(0, 2048), "", "Second", "Quill-Bold"},
      {"", "\1 /FamilyName (Second)", "", "Quill-Bold"},
      {"\1 /FontName (Quill [Roman]) def", "\1 ", "Suitcase", "Quill--Roman-"},
      {"\1 /FontName (Qu\xE9ll) def", "", "Suitcase", "Quill-Bold"},  // not UTF-8
  };
  for (const auto& row : rows) {
    Suitcase family("Qq");
    family.AddPrinterFile("QuillBol", ResourceForkBuilder()
                                          .Add(kPost, 501, row.first)
                                          .Add(kPost, 502, row.second)
                                          .Add(kPost, 503, "\1 /FamilyName (Third) /FontName /Third "));
    const FaceNames names = family.Collect(kCollected).names;
    EXPECT_EQ(names.family.str(), row.family) << row.first;
    EXPECT_EQ(names.post_script_name.str(), row.post_script) << row.first;
  }
}

TEST(PostScriptMetadata, TellsKindsAndDisplayNames) {
  const std::string plain = BitmapFamily("Quill-Bold").Build();
  const auto cid_family = [](std::int16_t size) {
    return FondBuilder(0x4000).Association(size, 0, 7).StyleString("Quill-Light-H-X").Build();
  };
  const auto other_family = [](std::int16_t id, std::int16_t script) {
    return FondBuilder(id).International(0, script).Association(0, 1, 6).Association(0, 0, 7).Build();
  };
  const auto outline = [](const char* bytes) { return ResourceForkBuilder().Add(kSfnt, 7, bytes); };
  const struct {
    std::string resource_name;
    std::string fond;
    ResourceForkBuilder fork;
    const char* kind;
    const char* display;
    CollectStatus status;  // kNoPostScriptHeader: an outline inside the file needs no printer file
  } rows[] = {
      {"Caf\x8E", plain, {}, "", "Caf\xC3\xA9", kPrinterFontMissing},
      {"MyriaMM_400", plain, {}, "PostScript - MM", "MyriaMM_400", kPrinterFontMissing},
      {"%MMyriadMM_400_600_", plain, {}, "PostScript - MM", "MyriadMM", kPrinterFontMissing},
      // No "MM" before a "_": seen as a Multiple Master family only when its PostScript name is composed.
      {"%MQuill_1", plain, {}, "PostScript - MM", "Quill", kPrinterFontMissing},
      {"%MQuill_1", other_family(128, 0), outline("typ1"), "", "%MQuill_1", kNoPostScriptHeader},
      {"Qq", cid_family(0), outline("typ1"), "CID", "Qq", kNoPostScriptHeader},
      {"A-CID Qq", cid_family(0), outline("x"), "CID", "A-CID Qq", kNoPostScriptHeader},
      {"Qq", cid_family(0), outline("true"), "", "Qq", kNoPostScriptHeader},
      {"A-CID", cid_family(0), {}, "OCF", "A-CID", kNoPostScriptHeader},
      {"Qq", other_family(128, 1), outline("typ1"), "CID", "Qq", kNoPostScriptHeader},
      {"Qq", other_family(0x41FF, 0), outline("typ1"), "CID", "Qq", kNoPostScriptHeader},
      {"Qq", other_family(0x4200, 0), outline("typ1"), "", "Qq", kNoPostScriptHeader},
      {"Qq", cid_family(0).substr(0, 59), {}, "OCF", "Qq", kNoPostScriptHeader},  // no name of a file
      {"Qq", cid_family(0).substr(0, 51), {}, "", "Qq", kNoPostScriptHeader},
      {"A-CID MM_", cid_family(0), outline("typ1"), "PostScript - MM", "A-CID MM_", kNoPostScriptHeader},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.resource_name + " " + row.kind);
    const CollectedFace face = Suitcase(row.resource_name, row.fond, row.fork).Collect(row.status);
    EXPECT_EQ(face.kind_name.str(), row.kind);
    EXPECT_EQ(face.names.display_name.str(), row.display);
  }
}

TEST(PostScriptMetadata, FallsBackToTheDataFork) {
  Suitcase family("Qq");
  const std::string path = family.folder.Path("QuillBol");
  const CollectedFace missing = family.Collect(kPrinterFontMissing);
  EXPECT_EQ(missing.printer_font_path, path);
  EXPECT_EQ(missing.names.post_script_name.str(), "Quill-Bold");
  // Only the beginning is read, and zero bytes end values but not the search.
  family.folder.Write("QuillBol", "\0/FamilyName (Fa\0mily)"s + std::string(5980, ' ') + "/Version (1)");
  const FaceNames names = family.Collect(kCollected).names;
  EXPECT_EQ(names.family.str() + "|" + names.version.str(), "Fa|");
  // A map without a first segment.
  family.AddPrinterFile("QuillBol", ResourceForkBuilder().Add(kPost, 502, "\1 /FamilyName (Second)"));
  EXPECT_EQ(family.Collect(kCollected).kind_name.str(), "");
  family.folder.Write("QuillBol", "/FamilyName (Data)");
  EXPECT_EQ(family.Collect(kCollected).names.family.str(), "Data");
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
  ASSERT_TRUE(first.is_file && first.data_fork && *first.data_fork);
  EXPECT_EQ((*first.data_fork)->family_name, "Data");
}

TEST(PostScriptMetadata, MakesNoPathOfANameThatHoldsASlash) {
  // In a double-byte family the file's name is what stands before the second hyphen.
  Suitcase family("Qq", FondBuilder(0x4000).Association(9, 0, 7).StyleString("sub/secret-Light-H").Build());
  family.folder.Write("sub/secret-Light", "/FamilyName (Secret)");
  EXPECT_EQ(family.Collect(kNoPostScriptHeader).printer_font_path, "");
}

}  // namespace
}  // namespace quillmark
