// A font of every kind of file that the library reads, each with everything in it that a reader looks at:
// what tests spoil, starve of memory, and read from many threads at once.
#ifndef QUILLMARK_TESTS_HOSTILE_SAMPLE_FILES_H_
#define QUILLMARK_TESTS_HOSTILE_SAMPLE_FILES_H_

#include <sys/xattr.h>

#include <filesystem>
#include <string>
#include <vector>

#include "builders/apple_double_builder.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {

struct SamplePart {
  std::string name;         // of the file, in the sample's folder
  std::string bytes;        // of the file
  std::string attribute{};  // or, when not empty, of this extended attribute of a part before it
};

struct Sample {
  std::string kind;
  std::string font;               // name of the part that a host asks for
  std::vector<SamplePart> parts;  // in the order in which they are to be written
};

// What samples are made of.
struct SampleOutlines {
  std::string regular;  // TrueType fonts
  std::string bold;
  std::string cff;  // an OpenType font with PostScript outlines
  std::string collection;
  std::string type1;  // a PostScript font program
  std::string post;   // a resource fork with a program's POST resources
};

// Names for both systems, a kerning table of one subtable with two pairs, and a layout table.
inline SfntBuilder SmallFont(const std::string& name) {
  const std::u16string wide(name.begin(), name.end());
  SfntBuilder font = SfntBuilder::CrossPlatform();
  font.Table("GPOS", BigEndianWriter().I16s({1, 0, 10, 12, 14, 0, 0, 0}).bytes());
  font.Table("OS/2", std::string(96, '\0'));
  font.Table("kern", BigEndianWriter().I16s({0, 1, 0, 26, 1, 2, 12, 1, 0, 1, 2, -30, 2, 1, -20}).bytes());
  font.MacName(0, "Copyright URW").MacName(1, "Quill").MacName(4, name);
  font.MacName(5, "Version 1.5").MacName(6, name).UnicodeName(4, wide);
  font.Name(1, 1, 11, 4, "\x83\x65\x83\x58\x83\x67");  // Shift-JIS
  font.WindowsName(0, u"Copyright URW").WindowsName(1, u"Quill").WindowsName(4, wide);
  return font.WindowsName(5, u"Version 1.5").WindowsName(6, wide).WindowsName(4, wide, 0x411);
}

// Two outlines with kerning; the bitmaps of a third style go with a printer font.
inline std::string SampleFork(const SampleOutlines& outlines) {
  FondBuilder fond(1000);
  fond.Association(0, 0, 128).Association(0, 1, 129).Association(12, 2, 130);
  fond.Kerning(0, {{'A', 'V', -50}, {'V', 'A', -50}}).Kerning(1, {{'A', 'V', -40}});
  fond.StyleString("Quill").StyleString("\x03").StyleString("-Italic").StyleIndex(2, 2);
  ResourceForkBuilder fork;
  fork.Add(FourCharCode("FOND"), 1000, fond.Build(), "Quill")
      .Add(FourCharCode("sfnt"), 128, outlines.regular);
  return fork.Add(FourCharCode("sfnt"), 129, outlines.bold).Add(FourCharCode("NFNT"), 130, "bitmap").Build();
}

// Bitmaps of three styles that name the printer font files Quill, QuillBol and QuillIta.
inline std::string Suitcase() {
  FondBuilder fond(128);
  fond.Association(12, 0, 500).Association(12, 1, 501).Association(12, 2, 502).Kerning(1, {{'A', 'V', -40}});
  for (const char* text : {"Quill", "\x04", "\x05", "-Bold", "-Italic"}) fond.StyleString(text);
  fond.StyleIndex(1, 2).StyleIndex(2, 3);
  ResourceForkBuilder fork;
  for (std::int16_t id = 500; id < 503; ++id) fork.Add(FourCharCode("NFNT"), id, "bitmap");
  return fork.Add(FourCharCode("FOND"), 128, fond.Build(), "Quill").Build();
}

inline std::string Sidecar(const std::string& fork, std::string_view type, std::string_view creator) {
  return AppleDoubleBuilder().FinderInfo(type, creator).ResourceFork(fork).Build();
}

// Of some hundred bytes each.
inline SampleOutlines SmallOutlines() {
  const std::string type1 =
      "%!PS-AdobeFont-1.0: Quill 001.005\n/FontInfo 9 dict dup begin /version (001.005) readonly def "
      "/Notice (Copyright URW) readonly def /FullName (Quill) readonly def /FamilyName (Quill) readonly def "
      "end readonly def /FontName /Quill def currentfile eexec";
  ResourceForkBuilder post;
  post.Add(FourCharCode("POST"), 501, "\x01 " + type1)
      .Add(FourCharCode("POST"), 502, "\x02 outlines")
      .Add(FourCharCode("POST"), 503, "\x05 ");
  CollectionBuilder collection;
  for (const char* name : {"QuillOne", "QuillTwo", "QuillThree"}) collection.Face(SmallFont(name));
  SfntBuilder cff = SmallFont("QuillPS").Version(FourCharCode("OTTO")).RemoveTable("glyf").Table("CFF ", "c");
  return {.regular = SmallFont("Quill").Build(),
          .bold = SmallFont("QuillBold").Build(),
          .cff = cff.Build(),
          .collection = collection.Trailer(std::string(2000, '.')).Build(),
          .type1 = type1,
          .post = post.Build()};
}

// The kinds truetype, opentype, collection, dfont, appledouble, attribute, suitcase and post.
inline std::vector<Sample> SamplesOf(const SampleOutlines& outlines) {
  const std::string fork = SampleFork(outlines);
  const std::string printer_font = Sidecar(outlines.post, "LWFN", "ASPF");
  return {
      {"truetype", "a.ttf", {{"a.ttf", outlines.regular}}},
      {"opentype", "a.otf", {{"a.otf", outlines.cff}}},
      {"collection", "a.ttc", {{"a.ttc", outlines.collection}}},
      {"dfont", "a.dfont", {{"a.dfont", fork}}},
      {"appledouble", "Font", {{"Font", ""}, {"._Font", Sidecar(fork, "FFIL", "DMOV")}}},
      // A few kilobytes are all that an attribute holds.
      {"attribute",
       "Font",
       {{"Font", ""},
        {"Font", Suitcase(), "user.com.apple.ResourceFork"},
        {"Font", BigEndianWriter().Text("FFILDMOV").Zeros(24).bytes(), "user.com.apple.FinderInfo"}}},
      {"suitcase",
       "Suitcase",
       {{"Suitcase", ""},
        {"._Suitcase", Sidecar(Suitcase(), "FFIL", "DMOV")},
        {"Quill", ""},
        {"._Quill", printer_font},
        {"QuillBol", outlines.post},
        {"QuillIta", outlines.type1}}},
      {"post", "Quill", {{"Quill", outlines.post}}},  // no face by itself
  };
}

// Writes all parts, in place of earlier ones. False when the file system refuses the extended attributes.
[[nodiscard]] inline bool WriteSample(const std::string& folder, const Sample& sample) {
  for (const auto& [name, bytes, attribute] : sample.parts) {
    const std::string path = folder + "/" + name;
    if (attribute.empty()) {
      std::filesystem::remove(path);  // some file systems write a truncated file out at once
      WriteFile(path, bytes);
    } else if (::setxattr(path.c_str(), attribute.c_str(), bytes.data(), bytes.size(), 0) != 0) {
      return false;
    }
  }
  return true;
}

}  // namespace quillmark

#endif
