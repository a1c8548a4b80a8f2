#include "analysis/face_checksums.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <tuple>
#include <utility>

#include "builders/apple_double_builder.h"
#include "builders/big_endian.h"
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
  return static_cast<std::uint32_t>(crc32_z(crc, AsBytes(bytes).data(), bytes.size()));
}

TEST(FaceChecksums, JoinTheForksOfAFile) {
  std::string data;  // more than one block
  for (std::uint32_t i = 0; i < 200'000; ++i) data += static_cast<char>(i * 31 + i / 251);
  const std::string fork = data.substr(7, 70'000);
  const TempFolder folder;
  folder.Write("Both", data);
  folder.Write("Data", data);
  folder.Write("Fork", "");
  for (const char* name : {"._Both", "._Fork"}) {
    folder.Write(name, AppleDoubleBuilder().ResourceFork(fork).Build());
  }
  for (const auto& [name, data_fork, both_forks] : {std::tuple("Both", Crc(data), Crc(data + fork)),
                                                    {"Data", Crc(data), Crc(data)},
                                                    {"Fork", 0, Crc(fork)},
                                                    {"Missing", 0, 0}}) {
    FileAccess access;
    FontFile file(access, folder.Path(name));
    const FaceChecksums checksums = GetOmbreluxChecksum(file, true);
    EXPECT_EQ(std::pair(checksums.current, checksums.legacy), std::pair(data_fork, both_forks)) << name;
  }
}

TEST(FaceChecksums, FollowKerningTablesToTheLetter) {
  const std::string first = "\1\2\0\3\4\5\0\6"s;
  const std::string last = "\7\1\xFF\xFF"s;
  FondBuilder sound(128);
  sound.Kerning(0, {{1, 2, 3}, {4, 5, 6}}).Kerning(1, {}).Kerning(0, {{7, 1, -1}});
  const std::size_t table = U32At(AsBytes(sound.Build()), 20).value();
  const auto with = [&sound](std::size_t field, std::uint32_t value) {
    FondBuilder spoiled = sound;
    spoiled.SetU16(field, static_cast<std::uint16_t>(value));
    return spoiled.Build();
  };
  std::string tiny = with(22, 24);  // a table in the header, of one sub-table of -1 pairs
  big_endian::Set16(tiny, 28, 0xFFFF);
  // The sum, to which the first sub-table gives 23 and the last 519, and the pairs.
  const std::tuple<const char*, std::string, std::uint32_t, std::string> rows[] = {
      {"no sub-tables", with(table, 0xFFFF), 0, ""},
      {"one of three", with(table, 0), 23, first},
      {"more than there are", with(table, 0x7FFF), 542, first + last},
      {"a header at the very end", with(table, 3) + "\0\0\0\5"s, 542, first + last},
      {"a byte behind it", with(table, 3) + "\0\0\0\5x"s, 547, first + last},
      {"pairs past the end", with(table + 20, 2), 25, first},
      {"a step back", with(table + 16, 0xFFFC), 46, first + first},
      {"a step before the FOND", with(table + 16, 0x8000), 23, first},
      {"no table", with(22, 0), 0, ""},
      {"a table past the end", with(20, 1), 0, ""},
      {"shorter than any FOND", tiny.substr(0, 51), 0, ""},
      {"the shortest", tiny.substr(0, 52), 2 * 0xFF, ""},
  };
  for (const auto& [what, fond, sum, pairs] : rows) {
    const FondKerning kerning(AsBytes(fond));
    EXPECT_EQ(std::pair(kerning.SumOfBytes(0), kerning.CrcOfPairs(0)), std::pair(sum, Crc(pairs))) << what;
  }
}

// The checksum of style 0 of the family in a suitcase, beside which a printer font file may lie.
std::uint32_t Ombrelux(const std::string& path, const std::string& whole_path) {
  FileAccess access;
  const ResourceFileHolder resources(QuillmarkResourceFile::initWithFile(path, true));
  Family family(resources.get(), getHandleOfTypeAndIndex(resources.get(), kFond, 1));
  FontFile file(access, whole_path);
  PrinterFonts printer_fonts(access, QM_ATTRIBUTES_ALL);
  const FaceChecksums checksums = GetOmbreluxChecksum(file, *resources.get(), family, 0, printer_fonts);
  EXPECT_EQ(checksums.legacy, checksums.current);
  return checksums.current;
}

TEST(FaceChecksums, FallBackFromPrinterFontsToOutlinesToBitmapsToTheFile) {
  const std::uint32_t kerning = Crc("\1\2\0\3"s);
  FondBuilder plain(128);
  plain.Association(0, 0, 7).Association(9, 0, 5).Association(9, 1, 6);
  const FondBuilder kerned = FondBuilder(plain).Kerning(0, {{1, 2, 3}});
  const auto printed =
      FondBuilder(128).Association(9, 0, 5).StyleString("Quill-Bold").Kerning(0, {{1, 2, 3}});
  ResourceForkBuilder bitmaps;
  bitmaps.Add(kNfnt, 7, "seven").Add(kFont, 5, "old").Add(kNfnt, 5, "new").Add(kNfnt, 6, "other style");
  const auto outlines = ResourceForkBuilder(bitmaps).Add(kSfnt, 7, "B").Add(kSfnt, 5, "A");
  const auto first_and = [](std::int16_t id, const char* bytes) {
    return ResourceForkBuilder().Add(kPost, 501, "first").Add(kPost, id, bytes);
  };
  const struct {
    const char* name;
    ResourceForkBuilder fork;
    FondBuilder fond;
    std::uint32_t alone;  // when the file itself cannot be read
    bool is_file_summed = false;
    std::string printer_data = "";
    std::string printer_resources = "";
  } rows[] = {
      {"outlines", outlines, plain, Crc("AB")},
      {"outlines after kerning", outlines, kerned, Crc("AB", kerning)},
      {"bitmaps", bitmaps, plain, Crc("newoldseven")},
      {"bitmaps after kerning", bitmaps, kerned, kerning, true},
      {"nothing", {}, plain, 0, true},
      {"segments up to a gap", bitmaps, printed, Crc("first", kerning), false, "",
       first_and(503, "third").Build()},
      {"up to an empty one", bitmaps, printed, Crc("first", kerning), false, "",
       first_and(502, "").Add(kPost, 503, "third").Build()},
      {"in the data fork", bitmaps, printed, Crc("firstsecond", kerning), false,
       first_and(502, "second").Build()},
      {"without a map", bitmaps, printed, Crc("%!PS"), false, "%!PS"},
  };
  for (const auto& row : rows) {
    const TempFolder folder;
    const std::string path = folder.Write(
        "Suitcase", ResourceForkBuilder(row.fork).Add(kFond, 128, row.fond.Build(), "Qq").Build());
    folder.Write("QuillBol", row.printer_data);
    folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork(row.printer_resources).Build());
    EXPECT_EQ(Ombrelux(path, "/nowhere/at/all"), row.alone) << row.name;
    // Whole files end with a resource fork; the map that is read stands in the data fork.
    folder.Write("._Suitcase", AppleDoubleBuilder().ResourceFork("fork").Build());
    EXPECT_EQ(Ombrelux(path, path), row.is_file_summed ? Crc(ReadFile(path) + "fork") : row.alone)
        << row.name;
  }
}

}  // namespace
}  // namespace quillmark
