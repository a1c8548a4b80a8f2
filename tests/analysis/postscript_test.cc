// What the header of a PostScript font tells, and which faces take it from their printer font file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <utility>

#include "analysis/postscript_header.h"
#include "analysis/postscript_metadata.h"
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

TEST(PostScriptHeader, FindsTheValueOfAKey) {
  const std::pair<std::string, std::string> rows[] = {
      {"/nOtIcE (MiXed) /Notice (b)", "MiXed"},
      {"/Notice (a (b (c)) ] d) def", "a (b (c)) ] d"},
      {"/Notice [a [b] (c] d]", "a [b] (c"},
      {"/Notice /a/b\nc\rd e", "a/b\nc\rd"},  // a name ends at a blank, at nothing else
      {"/Notice \n \n(x)", "x"},
      {"/Notice \r(a b)", "\r(a"},  // only blanks and line feeds are skipped
      {"/Notice (a (b) c", "a (b) c"},
      {"/Notice (ab\0cd)"s, "ab"},
      {"/Notice", ""},
      {"/Notice " + std::string(1 << 20, '('), std::string(3999, '(')},
  };
  for (const auto& [header, value] : rows) {
    EXPECT_EQ(findBlobForToken(LowerCasedHeader(header), header, "/notice"), value) << header.substr(0, 40);
  }
}

// What headers give, one after the other.
struct Gathered {
  FaceNames names;
  OmString kind;

  std::string Add(const PostScriptHeader& header) {
    GatherPostScriptMetaData(header, QM_ATTRIBUTES_ALL, names, kind);
    return kind.str() + "|" + names.version.str() + "|" + names.family.str() + "|" +
           names.post_script_name.str() + "|" + names.foundry.str();
  }
};

TEST(PostScriptHeader, PrefersOneKeyToAnother) {
  const std::pair<const char*, const char*> rows[] = {
      {"%!PS-AdobeFont-1.0: QuillSans-Bold 1.05\n%%Creator: None\n/FontInfo 9 dict dup begin\n"
       "/version (1.05) readonly def\n/Notice (Copyright (URW)++, 2014) readonly def\n"
       "/FullName (Quill Sans Bold) readonly def\n/FamilyName (Quill Sans) readonly def\nend readonly def\n"
       "/FontName /QuillSans-Bold def",
       "PostScript|1.05|Quill Sans|QuillSans-Bold|Copyright (URW)++, 2014"},
      {"/version (1) /FontName /F /CIDFontVersion 2.0 /CIDFontName /C def", "PostScript|2.0||C|"},
      {"/FullName (Times Roman) readonly def", "PostScript||Times Roman|Times Roman|"},
      {"\1\1%!PS-AdobeFont-1.0: A-B 1\n/FullName (C D)", "PostScript||A|C D|"},
      {"%!PS-AdobeFont-1.0: A-B 1\n", "PostScript||||"},  // at the first byte it is not seen
      {"\1\1%!PS-AdobeFont-", "PostScript||||"},
      {"/FamilyName () /FontName () /FullName (C D)", "PostScript||C D||"},
      {"/Notice (Qqq) % URW", "PostScript||||Qqq"},
      {"/Notice (Qqq) /Copyright (Qqq)", "PostScript||||"},
      {"/Copyright (URW 1990)", "PostScript||||URW 1990"},
      {"/Notice () /Copyright (URW 1990)", "PostScript||||"},
  };
  for (const auto& [header, expected] : rows) {
    Gathered all;
    EXPECT_EQ(all.Add(ReadPostScriptHeader(header, true)), expected) << header;
    EXPECT_EQ(all.names.display_name.str(), all.names.post_script_name.str()) << header;
    FaceNames names;
    GatherPostScriptMetaData(ReadPostScriptHeader(header, false), 0, names, all.kind);
    EXPECT_EQ(names.foundry.str() + names.post_script_name.str() + names.full_name.str(), "")
        << "not asked for";
  }
}

TEST(PostScriptHeader, ReplacesOnlyWhatAKeyMayReplace) {
  Gathered all;
  const auto gather = [&all](const char* header) { return all.Add(ReadPostScriptHeader(header, true)); };
  gather("/WeightVector /version 9 /FamilyName (old) /FontName (Old) /Notice (old URW)");
  EXPECT_EQ(gather("/version 1 /FullName (New) /Copyright (URW)"), "PostScript - MM|9|old|Old|old URW");
  EXPECT_EQ(gather("/CIDFontVersion 2 /FamilyName (New) /FontName (New) /Notice (URW)"),
            "PostScript - MM|2|New|New|URW");
}

TEST(PostScriptHeader, ZeroBytesOfAResourceAreUnderscores) {
  const std::string header =
      "\1\0%!PS-AdobeFont-1.0: A\0B-C\n/CIDFontVersion [1 [2]] /Notice (a\0URW) /FullName {F B}"s;
  EXPECT_EQ(Gathered().Add(ReadPostHeader(AsBytes(header), true)), "PostScript|1 [2]|A_B|F B|a_URW");
}

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
  const std::tuple<std::string, std::string, const char*> rows[] = {
      {"\1 /FamilyName (First)", "\1 /FamilyName (Second)", "Second|Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2048), "First|Quill-Bold"},
      {"\1 /FamilyName (First)", full_segment.substr(0, 2047), "Second|Quill-Bold"},
      {full_segment.substr(0, 2048), "", "Second|Quill-Bold"},
      {"", "\1 /FamilyName (Second)", "|Quill-Bold"},
      {"\1 /FontName (Quill [Roman]) def", "\1", "Suitcase|Quill--Roman-"},
      {"\1 /FontName (Qu\xE9ll) def", "", "Suitcase|Quill-Bold"},  // not UTF-8
  };
  for (const auto& [first, second, expected] : rows) {
    const Suitcase family("Qq");
    family.AddPosts({first, second, "\1 /FamilyName (Third) /FontName /Third "});
    const FaceNames names = family.Collect(kCollected).names;
    EXPECT_EQ(names.family.str() + "|" + names.post_script_name.str(), expected) << first;
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
  // Kind and display name, and the status: an outline inside the file needs no printer file.
  const std::tuple<std::string, std::string, ResourceForkBuilder, const char*, CollectStatus> rows[] = {
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
  for (const auto& [resource_name, fond, fork, shown, status] : rows) {
    const CollectedFace face = Suitcase(resource_name, fond, fork).Collect(status);
    EXPECT_EQ(face.kind_name.str() + "|" + face.names.display_name.str(), shown) << resource_name;
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
  printer_fonts.At(path);
  std::filesystem::remove(path);
  EXPECT_TRUE(printer_fonts.At(path).is_file);
}

}  // namespace
}  // namespace quillmark
