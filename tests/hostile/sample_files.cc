#include "hostile/sample_files.h"

#include <sys/xattr.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "builders/apple_double_builder.h"
#include "builders/big_endian.h"
#include "builders/collection_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kFond = FourCharCode("FOND");
constexpr std::uint32_t kNfnt = FourCharCode("NFNT");
constexpr std::uint32_t kSfnt = FourCharCode("sfnt");

// Names for both systems, a kerning table of one subtable with two pairs, and a layout table.
SfntBuilder SmallFont(const std::string& name) {
  const std::u16string wide(name.begin(), name.end());
  const std::string kern = BigEndianWriter()
                               .U16(0)
                               .U16(1)
                               .U16(0)
                               .U16(26)
                               .U16(1)
                               .U16(2)
                               .U16(12)
                               .U16(1)
                               .U16(0)
                               .U16(1)
                               .U16(2)
                               .I16(-30)
                               .U16(2)
                               .U16(1)
                               .I16(-20)
                               .bytes();
  return SfntBuilder::CrossPlatform()
      .Table("GPOS", BigEndianWriter().U32(0x00010000).U16(10).U16(12).U16(14).Zeros(6).bytes())
      .Table("OS/2", std::string(96, '\0'))
      .Table("kern", kern)
      .MacName(0, "Copyright URW")
      .MacName(1, "Quill")
      .MacName(4, name)
      .MacName(5, "Version 1.5")
      .MacName(6, name)
      .UnicodeName(4, wide)
      .Name(1, 1, 11, 4, "\x83\x65\x83\x58\x83\x67")  // Shift-JIS
      .WindowsName(0, u"Copyright URW")
      .WindowsName(1, u"Quill")
      .WindowsName(4, wide)
      .WindowsName(5, u"Version 1.5")
      .WindowsName(6, wide)
      .WindowsName(4, wide, 0x411);
}

// Two outlines with kerning; the bitmaps of a third style go with a printer font.
std::string Fork(const SampleOutlines& outlines) {
  const std::string fond = FondBuilder(1000)
                               .Association(0, 0, 128)
                               .Association(0, 1, 129)
                               .Association(12, 2, 130)
                               .Kerning(0, {{'A', 'V', -50}, {'V', 'A', -50}})
                               .Kerning(1, {{'A', 'V', -40}})
                               .StyleString("Quill")
                               .StyleString("\x03")
                               .StyleString("-Italic")
                               .StyleIndex(2, 2)
                               .Build();
  return ResourceForkBuilder()
      .Add(kFond, 1000, fond, "Quill")
      .Add(kSfnt, 128, outlines.regular)
      .Add(kSfnt, 129, outlines.bold)
      .Add(kNfnt, 130, "bitmap")
      .Build();
}

// Bitmaps of three styles that name the printer font files Quill, QuillBol and QuillIta.
std::string Suitcase() {
  const std::string fond = FondBuilder(128)
                               .Association(12, 0, 500)
                               .Association(12, 1, 501)
                               .Association(12, 2, 502)
                               .Kerning(1, {{'A', 'V', -40}})
                               .StyleString("Quill")
                               .StyleString("\x04")
                               .StyleString("\x05")
                               .StyleString("-Bold")
                               .StyleString("-Italic")
                               .StyleIndex(1, 2)
                               .StyleIndex(2, 3)
                               .Build();
  return ResourceForkBuilder()
      .Add(kNfnt, 500, "bitmap")
      .Add(kNfnt, 501, "bitmap")
      .Add(kNfnt, 502, "bitmap")
      .Add(kFond, 128, fond, "Quill")
      .Build();
}

std::string Sidecar(const std::string& fork, std::string_view type, std::string_view creator) {
  return AppleDoubleBuilder().FinderInfo(type, creator).ResourceFork(fork).Build();
}

}  // namespace

SampleOutlines SmallOutlines() {
  const std::string type1 =
      "%!PS-AdobeFont-1.0: Quill 001.005\n/FontInfo 9 dict dup begin /version (001.005) readonly def "
      "/Notice (Copyright URW) readonly def /FullName (Quill) readonly def /FamilyName (Quill) readonly def "
      "end readonly def /FontName /Quill def currentfile eexec";
  const auto post = ResourceForkBuilder()
                        .Add(FourCharCode("POST"), 501, "\x01 " + type1)
                        .Add(FourCharCode("POST"), 502, "\x02 outlines")
                        .Add(FourCharCode("POST"), 503, "\x05 ");
  return {
      .regular = SmallFont("Quill").Build(),
      .bold = SmallFont("QuillBold").Build(),
      .cff =
          SmallFont("QuillPS").Version(FourCharCode("OTTO")).RemoveTable("glyf").Table("CFF ", "c").Build(),
      .collection = CollectionBuilder()
                        .Face(SmallFont("QuillOne"))
                        .Face(SmallFont("QuillTwo"))
                        .Face(SmallFont("QuillThree"))
                        .Trailer(std::string(2000, '.'))
                        .Build(),
      .type1 = type1,
      .post = post.Build()};
}

std::vector<Sample> SamplesOf(const SampleOutlines& outlines) {
  const std::string fork = Fork(outlines);
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

bool WriteSamplePart(const std::string& folder, const SamplePart& part) {
  const std::string path = folder + "/" + part.name;
  if (!part.attribute.empty()) {
    return ::setxattr(path.c_str(), part.attribute.c_str(), part.bytes.data(), part.bytes.size(), 0) == 0;
  }
  std::filesystem::remove(path);  // some file systems write a truncated file out at once
  std::ofstream out(path, std::ios::binary);
  out.write(part.bytes.data(), static_cast<std::streamsize>(part.bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
  return true;
}

bool WriteSample(const std::string& folder, const Sample& sample) {
  for (const SamplePart& part : sample.parts) {
    if (!WriteSamplePart(folder, part)) return false;
  }
  return true;
}

}  // namespace quillmark
