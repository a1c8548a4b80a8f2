#include "analysis/face_checksums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "analysis/checksum.h"
#include "analysis/postscript_metadata.h"
#include "analysis/printer_font.h"
#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/gathered_names.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
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

// Of a FOND that belongs to no file: the second is the CRC of the kerning pairs alone. With its kerning
// remembered it has the same.
KerningChecksums Checksums(const std::string& fond, std::int16_t style) {
  const Handle handle = NewHandle(static_cast<Size>(fond.size()));
  std::ranges::copy(fond, *handle);
  const auto ask = [handle, style] {
    std::uint32_t file_checksum = 1;
    const KerningChecksums found = {
        GetKestineChecksum(handle, style),
        GetOmbreluxChecksum("/nowhere/at/all", nullptr, handle, style, false, file_checksum)};
    EXPECT_EQ(file_checksum, found.ombrelux);
    return found;
  };
  const KerningChecksums checksums = ask();
  {
    const FondKerningScope scope(handle);
    EXPECT_EQ(ask(), checksums);
    const FondKerningScope of_none(nullptr);  // must not serve this FOND
    EXPECT_EQ(ask(), checksums);
  }
  DisposeHandle(handle);
  return checksums;
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
  for (const std::int16_t style : std::initializer_list<std::int16_t>{0, 1}) {
    const KerningChecksums checksums = Checksums(builder.Build(), style);
    EXPECT_EQ(checksums, SlowChecksums(builder.Build(), style)) << style;
    EXPECT_GT(checksums.kestine, 1000000u) << "the long sub-tables were not met";
  }
}

// A resource file with one FOND, beside which a printer font file may lie.
struct ResourceFont {
  ResourceFont(const TempFolder& folder, ResourceForkBuilder fork, const std::string& fond_data)
      : path(folder.Write("Suitcase", fork.Add(FourCharCode("FOND"), 128, fond_data, "Qq").Build())),
        file(QuillmarkResourceFile::initWithFile(path, true)),
        fond(getHandleOfTypeAndResID(file.get(), FourCharCode("FOND"), 128)) {}

  std::uint32_t Ombrelux(bool want_data_fork, std::uint32_t& file_checksum) const {
    return GetOmbreluxChecksum(path, file.get(), fond.get(), 0, want_data_fork, file_checksum);
  }

  std::string path;
  ResourceFileHolder file;
  ResourceHandle fond;
};

TEST(FaceChecksums, TakePrinterFontsSegmentBySegment) {
  constexpr ResType kPost = FourCharCode("POST");
  const TempFolder folder;
  const ResourceFont font(folder, ResourceForkBuilder().Add(FourCharCode("NFNT"), 5, "bitmap"),
                          FondBuilder(128).Association(9, 0, 5).StyleString("Quill-Bold").Build());
  EXPECT_EQ(ChecksumPrinterFile(font.file.get(), font.fond.get(), 0, 77), 77u);  // none beside it
  const auto first_and = [](std::int16_t id, const char* bytes) {
    return ResourceForkBuilder().Add(kPost, 501, "first").Add(kPost, id, bytes);
  };
  const struct {
    const char* name;
    std::string data_fork;
    std::string resource_fork;
    std::uint32_t expected;  // from 77
  } rows[] = {
      {"gap", "", first_and(503, "third").Build(), Crc("first", 77)},
      {"empty one", "", first_and(502, "").Add(kPost, 503, "third").Build(), Crc("first", 77)},
      {"map in the data fork", first_and(502, "second").Build(), "", Crc("firstsecond", 77)},
      {"no map", "%!PS", "", Crc("%!PS")},  // starts anew
  };
  for (const auto& row : rows) {
    folder.Write("QuillBol", row.data_fork);
    folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork(row.resource_fork).Build());
    EXPECT_EQ(ChecksumPrinterFile(font.file.get(), font.fond.get(), 0, 77), row.expected) << row.name;
    const std::uint32_t from_0 = ChecksumPrinterFile(font.file.get(), font.fond.get(), 0, 0);
    std::uint32_t file_checksum = 1;
    EXPECT_EQ(font.Ombrelux(false, file_checksum), from_0 != 0 ? from_0 : Crc("bitmap")) << row.name;
  }
}

TEST(FaceChecksums, FallBackFromOutlinesToBitmapsToTheFile) {
  const auto fond = FondBuilder(128).Association(0, 0, 7).Association(9, 0, 5).Association(9, 1, 6);
  const auto kerned_fond = FondBuilder(fond).Kerning(0, {{1, 2, 3}});
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
    std::optional<std::uint32_t> expected;  // none: the whole file's
  } rows[] = {
      {"outlines", outlines, fond, Crc("AB")},
      {"outlines after kerning", outlines, kerned_fond, Crc("AB", Crc("\1\2\0\3"s))},
      {"bitmaps", bitmaps, fond, Crc("newoldseven")},
      {"bitmaps after kerning", bitmaps, kerned_fond, std::nullopt},
      {"nothing", ResourceForkBuilder(), fond, std::nullopt},
  };
  for (const auto& row : rows) {
    const TempFolder folder;
    const ResourceFont font(folder, row.fork, row.fond.Build());
    // Whole files end with a resource fork beside the one that is open.
    folder.Write("._Suitcase", AppleDoubleBuilder().ResourceFork("fork").Build());
    const std::uint32_t data_fork = Crc(ReadFile(font.path));
    const std::uint32_t expected = row.expected.value_or(Crc("fork", data_fork));
    std::uint32_t file_checksum = 1;
    EXPECT_EQ(font.Ombrelux(false, file_checksum), expected) << row.name;
    EXPECT_EQ(file_checksum, expected) << row.name;
    EXPECT_EQ(font.Ombrelux(true, file_checksum), data_fork) << row.name;
    EXPECT_EQ(file_checksum, Crc("fork", data_fork)) << row.name;
    if (!row.expected) continue;
    // A file that cannot be read leaves what the face itself gave.
    EXPECT_EQ(GetOmbreluxChecksum("", font.file.get(), font.fond.get(), 0, true, file_checksum), expected);
    EXPECT_EQ(file_checksum, expected) << row.name;
  }
}

TEST(FaceChecksums, AndNamesAreTheSameWhenStylesShareWhatTheyName) {
  // Styles 0 to 3 name one printer font file, 4 to 7 an outline; the odd ones are kerned.
  FondBuilder fond(128);
  fond.StyleString("Quill-Bold");
  for (std::int16_t style = 0; style < 8; ++style) {
    fond.Association(style < 4 ? 9 : 0, style, style < 4 ? 5 : 7);
    if (style >= 6) fond.Association(0, style, 8);
    if (style % 2 == 1) fond.Kerning(style, {{1, 2, style}});
  }
  const auto suitcase = ResourceForkBuilder()
                            .Add(FourCharCode("NFNT"), 5, "bitmap")
                            .Add(FourCharCode("sfnt"), 7, "seven")
                            .Add(FourCharCode("sfnt"), 8, "eight");
  const auto segments = ResourceForkBuilder()
                            .Add(FourCharCode("POST"), 501, "\1 /FamilyName (Fa) /version (1) /FontName /Na ")
                            .Add(FourCharCode("POST"), 502, "second");
  for (const std::string& fork : {segments.Build(), ResourceForkBuilder().Build(), ""s}) {
    const TempFolder folder;
    const ResourceFont font(folder, suitcase, fond.Build());
    folder.Write("QuillBol", "%!PS /version (2)");
    folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork(fork).Build());
    const auto ask = [&font] {
      std::vector<std::string> found;
      for (std::int16_t style = 0; style < 8; ++style) {
        std::uint32_t file_checksum = 1;
        found.push_back(std::to_string(GetOmbreluxChecksum(font.path, font.file.get(), font.fond.get(), style,
                                                           style == 3, file_checksum)));
        found.push_back(std::to_string(file_checksum));
        GatheredNames names;
        if (style >= 2) names.version = "given";  // and so kept
        FaceOutputs outputs = names.Outputs();
        if (style % 2 == 1) outputs.names.full_name = nullptr;
        found.push_back(std::to_string(
            CollectPSMetaDataMac(font.file.get(), font.path, font.fond.get(), style, outputs)));
        for (const OmString& name :
             {names.kind, names.family, names.version, names.post_script, names.full}) {
          found.push_back(name.str());
        }
      }
      return found;
    };
    const auto alone = ask();
    const ChecksumScope checksums;
    const PrinterFontScope printer_fonts;
    EXPECT_EQ(ask(), alone);
    folder.Write("QuillBol", "changed");
    folder.Write("._QuillBol", AppleDoubleBuilder().ResourceFork("changed").Build());
    EXPECT_EQ(ask(), alone) << "read again";
  }
}

}  // namespace
}  // namespace quillmark
