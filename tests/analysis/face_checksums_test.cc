#include "analysis/face_checksums.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis/checksum.h"
#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"
#include "resources/fond_kerning.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

using std::string_literals::operator""s;

std::uint32_t Crc(std::string_view bytes, std::uint32_t crc = 0) {
  return CChecksum::icrc(AsBytes(bytes), crc);
}

struct KerningChecksums {
  std::uint32_t kestine = 0;
  std::uint32_t ombrelux = 0;
  bool operator==(const KerningChecksums&) const = default;
};

KerningChecksums Checksums(const std::string& fond, std::int16_t style) {
  const FondKerning kerning(AsBytes(fond));
  return {kerning.SumOfBytes(style), kerning.CrcOfPairs(style)};
}

// The walk as the scheme states it, one byte at a time.
KerningChecksums SlowChecksums(const std::string& fond, std::int16_t style) {
  KerningChecksums checksums;
  const Bytes bytes = AsBytes(fond);
  const auto size = static_cast<long>(bytes.size());
  const long table = U32At(bytes, 20).value_or(0);
  const auto last = I16At(bytes, static_cast<std::size_t>(table));
  if (size < 52 || table == 0 || !last) return checksums;
  long position = table + 2;
  for (int index = 0; index < *last + 1 && position >= 0; ++index) {
    if (position + 4 >= size) continue;
    const auto start = static_cast<std::size_t>(position);
    const bool matches = I16At(bytes, start) == style;
    const int count = I16At(bytes, start + 2).value();
    for (std::size_t i = 0; matches && i < 4; ++i) checksums.kestine += bytes[start + i];
    position += 4 + 4L * count;
    if (!matches || count < 1 || position > size) continue;
    for (std::size_t i = start + 4; i < static_cast<std::size_t>(position); ++i) {
      checksums.kestine += bytes[i];
      checksums.ombrelux = CChecksum::icrc(bytes.subspan(i, 1), checksums.ombrelux);
    }
  }
  return checksums;
}

TEST(FaceChecksums, TakeEverySubTableOfTheStyle) {
  const std::string fond = FondBuilder(128)
                               .Kerning(1, {{'A', 'V', -2}, {'V', 'A', 3}})
                               .Kerning(0, {{'T', 'o', 1}})
                               .Kerning(1, {{'W', 'a', 256}})
                               .Build() +
                           "tail";
  EXPECT_EQ(Checksums(fond, 0), (KerningChecksums{1 + 'T' + 'o' + 1, Crc("To\0\1"s)}));
  EXPECT_EQ(Checksums(fond, 1),
            (KerningChecksums{(1 + 2 + 'A' + 'V' + 0xFF + 0xFE + 'V' + 'A' + 3) + (1 + 1 + 'W' + 'a' + 1),
                              Crc("AV\xFF\xFEVA\0\3Wa\1\0"s)}));
  EXPECT_EQ(Checksums(FondBuilder(128).Association(9, 0, 1).Build(), 0), KerningChecksums());
}

TEST(FaceChecksums, FollowSpoiledKerningTables) {
  FondBuilder plain(128);
  plain.Association(9, 0, 1).Kerning(0, {{1, 2, 3}, {4, 5, 6}}).Kerning(1, {}).Kerning(0, {{7, 8, 9}});
  const std::string fond = plain.Build();
  const std::size_t table = U32At(AsBytes(fond), 20).value();
  for (std::size_t length = 0; length <= fond.size(); ++length) {
    EXPECT_EQ(Checksums(fond.substr(0, length), 0), SlowChecksums(fond.substr(0, length), 0)) << length;
  }
  // Every 16-bit field, and the halves of the table's offset, at the values where a sign or an end turns.
  for (std::size_t field = 20; field + 2 <= fond.size(); field = field == 22 ? table : field + 2) {
    for (const int value : {0, 1, 2, 4, 0x7FFF, -0x8000, -32, -4, -3, -2, -1}) {
      FondBuilder spoiled = plain;
      spoiled.SetU16(field, static_cast<std::uint16_t>(value));
      EXPECT_EQ(Checksums(spoiled.Build(), 0), SlowChecksums(spoiled.Build(), 0)) << field << " " << value;
      spoiled.SetU16(table, 0x7FFF);
      EXPECT_EQ(Checksums(spoiled.Build(), 0), SlowChecksums(spoiled.Build(), 0)) << field << " " << value;
    }
  }
}

TEST(FaceChecksums, FollowOverlappingSubTables) {
  // 64 times 600 pairs forward and 600 back, so that each long sub-table begins 8 bytes behind the one
  // before.
  FondBuilder builder(128);
  std::vector<FondBuilder::KerningPair> filler(1500, {0, 1, 0x1234});
  for (std::size_t i = 0; i < filler.size(); ++i) filler[i].first = static_cast<std::uint8_t>(i / 7);
  builder.Kerning(0, filler);
  const std::size_t table = U32At(AsBytes(builder.Build()), 20).value();
  builder.SetU16(table, 127);
  for (std::size_t i = 0; i < 64; ++i) {
    const std::size_t forward = table + 2 + 8 * i;
    builder.SetU32(forward, (i % 3 == 0 ? 0x10000u : 0u) + 600u);
    builder.SetU32(forward + 4 + 600 * 4, 0x10000u - 600u);
  }
  for (std::int16_t style = 0; style < 2; ++style) {
    const KerningChecksums checksums = Checksums(builder.Build(), style);
    EXPECT_EQ(checksums, SlowChecksums(builder.Build(), style)) << style;
    EXPECT_GT(checksums.kestine, 1000000u) << "the long sub-tables were not met";
  }
}

// The checksum of style 0 of the one FOND of a resource file, beside which a printer font file may lie.
std::uint32_t Ombrelux(const std::string& resource_path, const std::string& whole_path) {
  FileAccess access;
  const ResourceFileHolder resources(QuillmarkResourceFile::initWithFile(resource_path, true));
  Family family(resources.get(), getHandleOfTypeAndIndex(resources.get(), FourCharCode("FOND"), 1));
  FontFile file(access, whole_path);
  PrinterFonts printer_fonts(access, QM_ATTRIBUTES_ALL);
  const FaceChecksums checksums = GetOmbreluxChecksum(file, *resources.get(), family, 0, printer_fonts);
  EXPECT_EQ(checksums.legacy, checksums.current);
  return checksums.current;
}
std::uint32_t Ombrelux(const std::string& path) { return Ombrelux(path, path); }

std::string WriteSuitcase(const TempFolder& folder, ResourceForkBuilder fork, const FondBuilder& fond) {
  return folder.Write("Suitcase", fork.Add(FourCharCode("FOND"), 128, fond.Build(), "Qq").Build());
}

TEST(FaceChecksums, TakePrinterFontsSegmentBySegment) {
  const auto first_and = [](std::int16_t id, const char* bytes) {
    return ResourceForkBuilder().Add(kPost, 501, "first").Add(kPost, id, bytes);
  };
  const struct {
    const char* name;
    std::string data_fork;
    std::string resource_fork;
    const char* summed;
    bool continues = true;  // what the kerning gave
  } rows[] = {
      {"gap", "", first_and(503, "third").Build(), "first"},
      {"empty one", "", first_and(502, "").Add(kPost, 503, "third").Build(), "first"},
      {"map in the data fork", first_and(502, "second").Build(), "", "firstsecond"},
      {"no map", "%!PS", "", "%!PS", false},
  };
  const FondBuilder plain = FondBuilder(128).Association(9, 0, 5).StyleString("Quill-Bold");
  for (const bool kerned : {false, true}) {
    const TempFolder folder;
    const std::string path =
        WriteSuitcase(folder, ResourceForkBuilder().Add(FourCharCode("NFNT"), 5, "bitmap"),
                      kerned ? FondBuilder(plain).Kerning(0, {{1, 2, 3}}) : plain);
    for (const auto& row : rows) {
      folder.Write("QuillBol", row.data_fork);
      folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork(row.resource_fork).Build());
      const std::uint32_t start = kerned && row.continues ? Crc("\1\2\0\3"s) : 0;
      EXPECT_EQ(Ombrelux(path), Crc(row.summed, start)) << row.name;
    }
  }
}

TEST(FaceChecksums, FallBackFromOutlinesToBitmapsToTheFile) {
  const auto fond = FondBuilder(128).Association(0, 0, 7).Association(9, 0, 5).Association(9, 1, 6);
  const auto kerned_fond = FondBuilder(fond).Kerning(0, {{1, 2, 3}});
  const std::uint32_t kerning = Crc("\1\2\0\3"s);
  const auto bitmaps = ResourceForkBuilder()
                           .Add(FourCharCode("NFNT"), 7, "seven")
                           .Add(FourCharCode("FONT"), 5, "old")
                           .Add(FourCharCode("NFNT"), 5, "new")
                           .Add(FourCharCode("NFNT"), 6, "other style");
  const auto outlines =
      ResourceForkBuilder(bitmaps).Add(FourCharCode("sfnt"), 7, "B").Add(FourCharCode("sfnt"), 5, "A");
  const struct {
    const char* name;
    ResourceForkBuilder fork;
    FondBuilder fond;
    std::uint32_t alone;  // when the file itself cannot be read
    bool is_file_summed = false;
  } rows[] = {
      {"outlines", outlines, fond, Crc("AB")},
      {"outlines after kerning", outlines, kerned_fond, Crc("AB", kerning)},
      {"bitmaps", bitmaps, fond, Crc("newoldseven")},
      {"bitmaps after kerning", bitmaps, kerned_fond, kerning, true},
      {"nothing", ResourceForkBuilder(), fond, 0, true},
  };
  for (const auto& row : rows) {
    const TempFolder folder;
    const std::string path = WriteSuitcase(folder, row.fork, row.fond);
    EXPECT_EQ(Ombrelux(path, "/nowhere/at/all"), row.alone) << row.name;
    // Whole files end with a resource fork; the map that is read stands in the data fork.
    folder.Write("._Suitcase", AppleDoubleBuilder().ResourceFork("fork").Build());
    EXPECT_EQ(Ombrelux(path), row.is_file_summed ? Crc(ReadFile(path) + "fork") : row.alone) << row.name;
  }
}

}  // namespace
}  // namespace quillmark
