#include "analysis/face_collector.h"

#include <gtest/gtest.h>

#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "builders/big_endian.h"
#include "builders/fond_builder.h"
#include "builders/gathered_names.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "platform/cf_ref.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

struct Face : GatheredNames {
  int status = 0;
  OmString platform, windows_full;
  std::uint32_t kerning = 0;

  FaceOutputs Outputs() {
    FaceOutputs outputs = GatheredNames::Outputs();
    outputs.platform = &platform;
    outputs.names.windows_full_name = &windows_full;
    outputs.kerning_checksum = &kerning;
    return outputs;
  }
  std::string Line() const {
    std::string line = std::to_string(status) + "|" + std::to_string(kerning);
    for (const OmString* text :
         {&platform, &foundry, &family, &version, &post_script, &display, &full, &windows_full}) {
      line += "|" + text->str();
    }
    return line;
  }
};

Face Collect(const std::string& path) {
  Face face;
  face.status = CollectMetaData(nullptr, path, nullptr, 0, face.Outputs());
  return face;
}

SfntBuilder NamedFont() {
  return SfntBuilder::CrossPlatform()
      .MacName(0, "Copyright")
      .MacName(1, "Quill Sans  ")
      .MacName(5, "Version 1.4")
      .MacName(6, "QuillSans")
      .WindowsName(4, u"Quill Sans Regular")
      .Table("kern", std::string("\0\0\0\1\0\0\0\2", 8))
      .Table("zzzz", "last");
}

TEST(FaceCollector, CollectsAWholeFontAndItsKind) {
  const TempFolder folder;
  EXPECT_EQ(Collect(folder.Write("a.ttf", NamedFont().Build())).Line(),
            "0|3|crossplatform|Copyright|Quill Sans|Version 1.4|QuillSans|QuillSans|Quill Sans Regular|"
            "Quill Sans Regular");
  EXPECT_EQ(CollectMetaData(nullptr, folder.Path("a.ttf"), nullptr, 0, {}), kCollected) << "nothing wanted";
  const auto kind = [&](const char* name, const SfntBuilder& font) {
    return Collect(folder.Write(name, font.Build())).kind.str();
  };
  const SfntBuilder open_type = NamedFont().Version(FourCharCode("OTTO"));
  EXPECT_EQ(kind("a.ttf", NamedFont().Table("GSUB", "")), "OpenType - TT");
  EXPECT_EQ(kind("a", open_type), "OpenType - PS");
  EXPECT_EQ(kind("a.pfb", open_type), "");
}

TEST(FaceCollector, AnswersNoDataAndStillTrimsTheFamily) {
  const TempFolder folder;
  for (const std::string& path : {folder.Write("empty.ttf", ""), folder.Write("a.ttf", "abcd"),
                                  folder.Write("a.fon", NamedFont().Build()),
                                  folder.Write("a", NamedFont().Build()), folder.Path("missing")}) {
    Face face;
    face.family = "before \t  ";
    EXPECT_EQ(CollectMetaData(nullptr, path, nullptr, 0, face.Outputs()), kNoFontData) << path;
    EXPECT_EQ(face.family.str(), "before \t") << path;
  }
  const std::string nameless = SfntBuilder().Table("kern", "abcd").Table("last", "last").Build();
  const Face face = Collect(folder.Write("c.ttf", nameless));
  EXPECT_EQ(face.status, kNoFontData);
  EXPECT_EQ(face.kerning, FourCharCode("abcd")) << "the kerning checksum does not need names";
}

TEST(FaceCollector, AFontInAResourceStaysTheMacs) {
  const TempFolder folder;
  const std::string map = ResourceForkBuilder()
                              .Add(FourCharCode("FOND"), 128, FondBuilder(128).Association(0, 0, 7).Build())
                              .Add(FourCharCode("sfnt"), 7, NamedFont().Table("GSUB", "").Build())
                              .Build();
  const std::string path = folder.Write("a.dfont", map);
  const auto cf_path = Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  const ResourceFileHolder file(AllocateResourceFile(cf_path.get(), true));
  const ResourceHandle fond(getHandleOfTypeAndIndex(file.get(), FourCharCode("FOND"), 1));
  ASSERT_NE(fond.get(), nullptr);
  Face face;
  face.status = CollectMetaData(file.get(), path, fond.get(), 0, face.Outputs());
  EXPECT_EQ(face.Line().substr(0, 28), "0|3|mac|Copyright|Quill Sans");
  EXPECT_EQ(face.kind.str(), "TrueType") << "layout tables count in the data fork only";
  face.status = CollectMetaData(file.get(), path, fond.get(), 1, face.Outputs());
  EXPECT_EQ(face.status, kNoFontData) << "a style that the family lacks";
}

// The same readers over the whole font in memory.
Face ReadInMemory(const std::string& bytes) {
  Face face;
  face.platform = "mac";
  const SfntData font(AsBytes(bytes));
  const FaceOutputs outputs = face.Outputs();
  face.status = kNoFontData;
  if (getMetaDataFromNamesTable(font, outputs.names)) {
    face.status = GetPlatformTTF(font, outputs.platform) ? kCollected : kUndecided;
  }
  GetTrueTypeKerningTableChecksum(font, outputs.kerning_checksum);
  std::string family = face.family.str();
  family.resize(family.find_last_not_of(' ') + 1);
  face.family = family;
  return face;
}

TEST(FaceCollector, ASpoiledFileReadsAsTheSameBytesInMemory) {
  const TempFolder folder;
  const std::string font = NamedFont().Build();
  int collected = 0;
  int files = 0;  // each a new one: writing over a file is slow
  const auto check = [&](const std::string& bytes) {
    const Face face = Collect(folder.Write(std::to_string(++files) + ".ttf", bytes));
    ASSERT_EQ(face.Line(), ReadInMemory(bytes).Line());
    collected += face.status == kCollected;
  };
  for (std::size_t size = 0; size <= font.size(); ++size) {
    SCOPED_TRACE(testing::Message() << "cut at " << size);
    check(font.substr(0, size));
  }
  EXPECT_GT(collected, 0);
  // Every 16-bit field of the header, the directory and the name table; 32-bit fields in their halves.
  const std::size_t names = TablePosition(font, "name");
  const std::size_t directory_end = 12 + 16 * NamedFont().Tables().size();
  for (std::size_t at = 0; at < names + 6 + 5 * 12; at += at == directory_end ? names - directory_end : 2) {
    for (const std::uint32_t value : {0x0000u, 0x0001u, 0x7FFFu, 0x8000u, 0xFFFFu}) {
      SCOPED_TRACE(testing::Message() << "field at " << at << " set to " << value);
      std::string spoiled = font;
      big_endian::Set16(spoiled, at, value);
      check(spoiled);
      if (at % 4 != 0) continue;
      big_endian::Set32(spoiled, at, value == 0xFFFF ? 0xFFFFFFFF : value);
      check(spoiled);
    }
  }
}

}  // namespace
}  // namespace quillmark
