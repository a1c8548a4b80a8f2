// A font file: the kind that it is taken for, its bytes, wherever they lie, and the directory at their start.
#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>
#include <tuple>

#include "analysis/face_collector.h"
#include "analysis/font_kind.h"
#include "analysis/sfnt_data.h"
#include "analysis/sfnt_directory.h"
#include "builders/big_endian.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using big_endian::Set16;
using big_endian::Set32;

// A PFM file: size field, copyright text, 117 bytes and `extra` more.
std::string Pfm(std::size_t extra, const std::string& notice, std::size_t notice_at = 6) {
  std::string bytes(117 + extra, '\0');
  bytes[2] = static_cast<char>(bytes.size());
  return bytes.replace(notice_at, notice.size(), notice);
}

TEST(FontKind, IsDecidedByExtensionAndThenByFirstBytes) {
  const std::string otto = "OTTO and more";
  const std::tuple<const char*, std::string, const char*> rows[] = {
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
      {"a.b.ttf", otto, "TrueType"},
      {"otto", otto, "OpenType - PS"},
      {"collection", "ttcf and more", ""},  // read in the host's order
      {"swapped", "fctt and more", "TrueType"},
      {"pfm", Pfm(3, "a CopyRight b"), "PostScript"},
      {"last place", Pfm(0, "copyright", 57), "PostScript"},
      {"one too far", Pfm(0, "copyright", 58), ""},
      {"one byte off", Pfm(3, "Copyright") + '\0', ""},
  };
  const TempFolder folder;
  for (const auto& [name, bytes, kind] : rows) {
    const std::string path = folder.Write(name, bytes);
    const auto data = RegularFile::Open(path);
    EXPECT_STREQ(KindName(getMetaData_FontType(path, data, nullptr)), kind) << name;
  }
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

// The tail of each table is not a multiple of 4; one is empty, and ranges cross all of them.
TEST(SfntData, FileMemoryAndTablesGiveTheSameBytesAndSums) {
  std::string whole;  // its bytes differ from place to place, and fill several blocks
  for (std::uint32_t i = 0; i < 200'001; ++i) whole += static_cast<char>(i * 31 + i / 251);
  std::string bytes = whole.substr(0, 44);
  std::vector<SfntData::Table> tables;
  for (const std::uint32_t length : {5u, 0u, 70'001u, 1u, 130'000u}) {
    const Bytes table = AsBytes(whole).subspan(7, length);
    tables.push_back({7, length, SumBigEndianWords(table)});
    bytes += AsText(table);
    bytes.resize((bytes.size() + 3) / 4 * 4);
  }
  const auto size = static_cast<std::uint32_t>(bytes.size());
  const TempFolder folder;
  const PagedFile tables_file(RegularFile::Open(folder.Write("tables", whole)).value(), whole.size());
  std::vector<SfntData> fonts;
  fonts.emplace_back(AsBytes(bytes));
  fonts.emplace_back(RegularFile::Open(folder.Write("font", bytes)).value(), size);
  fonts.emplace_back(std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 44), tables_file, tables);
  constexpr std::uint32_t kMax = 0xFFFFFFFF;
  const std::pair<std::uint32_t, std::uint32_t> ranges[] = {
      {0, size}, {size - 1, 1}, {size, 1}, {size + 1, 0},   {1, kMax},
      {kMax, 1}, {44, 8},       {43, 10},  {4095, 100'000}, {70'053, 20}};
  for (const auto& [offset, length] : ranges) {
    std::optional<std::string_view> text;
    if (std::uint64_t{offset} + length <= size) text = std::string_view(bytes).substr(offset, length);
    for (const SfntData& font : fonts) {
      SCOPED_TRACE(testing::Message() << offset << "+" << length << " of backing " << &font - fonts.data());
      const auto range = font.Range(offset, length);
      ASSERT_EQ(range.has_value(), text.has_value());
      ASSERT_EQ(font.SumOfWords(offset, length).has_value(), text.has_value());
      if (!text) continue;
      EXPECT_EQ(AsText(*range), *text);
      EXPECT_EQ(font.SumOfWords(offset, length), SumBigEndianWords(AsBytes(*text)));
    }
  }
}

TEST(SfntData, BytesThatAFileLacksAreZero) {
  const TempFolder folder;
  const SfntData font(RegularFile::Open(folder.Write("font", "\1\2\3\4\5")).value(), 70'000);
  EXPECT_EQ(AsText(*font.Range(3, 4)), std::string_view("\4\5\0\0", 4));
  EXPECT_EQ(AsText(*font.Range(69'999, 1)), std::string_view("\0", 1));
  EXPECT_EQ(font.SumOfWords(0, 70'000), 0x01020304u + 0x05000000u);
}

SfntData View(const std::string& font) { return SfntData(AsBytes(font)); }

// The offset in the entry, 0 without one.
std::uint32_t OffsetOf(const std::string& font, const char* tag) {
  return FindSpecifiedTable(View(font), tag).value_or(TDirectoryEntry()).offset;
}

// Tags compare up to their first zero byte, counts are signed, and an entry must end before the font does.
TEST(SfntDirectory, LooksAtTheEntriesThatCount) {
  std::string font = SfntHeader(0x00010000, 0) + SfntDirectoryEntry(std::string("ab\0c", 4), "", 1) +
                     SfntDirectoryEntry("kern", "", 2) + SfntDirectoryEntry(std::string("\0ern", 4), "", 3);
  for (const auto& [count, last] : {std::pair{0u, 0u}, {2u, 0u}, {0x7FFFu, 3u}, {0x8000u, 0u}, {3u, 3u}}) {
    Set16(font, 4, count);
    EXPECT_EQ(OffsetOf(font + "x", ""), last) << count;
  }
  EXPECT_EQ(OffsetOf(font, "ab"), 1u);
  EXPECT_EQ(OffsetOf(font, "abc"), 0u);
  for (std::size_t size = 0; size <= font.size(); ++size) {
    EXPECT_EQ(OffsetOf(font.substr(0, size), "kern"), size > 44 ? 2u : 0u) << size;
    EXPECT_EQ(OffsetOf(font.substr(0, size), ""), 0u) << size;
  }
}

TEST(SfntDirectory, PlatformNeedsTheTablesOfBothSystems) {
  const auto platform = [](const std::string& font) {
    OmString text = "unset";
    const bool decided = GetPlatformTTF(View(font), &text);
    return (decided ? "" : "undecided ") + text.str();
  };
  const SfntBuilder sound = SfntBuilder::CrossPlatform();
  const std::string font = sound.Build();
  EXPECT_EQ(platform(SfntBuilder(sound).Version(FourCharCode("OTTO")).Build()), "crossplatform");
  EXPECT_EQ(platform(SfntBuilder(sound).Version(FourCharCode("true")).Build()), "mac");
  for (const char* tag : {"cmap", "name", "post", "maxp", "head", "hhea", "hmtx", "OS/2", "kern"}) {
    const bool needed = std::string_view("OS/2 kern").find(tag) == std::string_view::npos;
    const SfntBuilder with = needed ? sound : SfntBuilder(sound).Table(tag, "1234");
    EXPECT_EQ(platform(SfntBuilder(with).RemoveTable(tag).Build()), needed ? "mac" : "crossplatform") << tag;
    std::string spoiled = with.Build();
    Set32(spoiled, EntryPosition(spoiled, tag) + 12, 0x10000);
    EXPECT_EQ(platform(spoiled), "mac") << tag;
  }
  EXPECT_EQ(platform(font.substr(0, 4)), "undecided unset");
  EXPECT_EQ(platform(font.substr(0, 5)), "mac");
}

TEST(SfntDirectory, KerningChecksumSumsTheFirstOfThreeTables) {
  const std::string words("\xFF\xFF\xFF\xFF\0\0\0\x02\0\0\1\0", 12);  // sums, wrapping, to 101
  constexpr std::uint32_t kUntouched = 77;
  const auto with = [&](const char* tag, const char* next) {
    return SfntBuilder().Table(tag, words).Table(next, "behind").Build();
  };
  const std::string font = with("kern", "last");
  const auto spoiled = [&font](std::uint32_t offset, std::uint32_t length) {
    std::string bytes = font;
    Set32(bytes, EntryPosition(font, "kern") + 4, 0xCAFE);
    Set32(bytes, EntryPosition(font, "kern") + 8, offset);
    Set32(bytes, EntryPosition(font, "kern") + 12, length);
    return bytes;
  };
  const std::tuple<const char*, std::string, std::uint32_t> rows[] = {
      {"kern", with("kern", "GPOS"), 0x101},
      {"GPOS", with("GPOS", "glyf"), 0x101},
      {"glyf", with("glyf", "last"), 0x101},
      {"none of them", with("last", "none"), kUntouched},
      {"no multiple of 4: the directory's", spoiled(44, 10), 0xCAFE},
      {"a table that ends the font", SfntBuilder().Table("kern", words).Build(), 0},
      {"at offset 0", spoiled(0, 12), 0},
      {"a sum that wraps", spoiled(0xFFFFFFF0, 0x20), 0},
      {"a length that wraps", spoiled(4, 0xFFFFFFFC), 0},
      {"outside", spoiled(0x10000, 12), kUntouched},
  };
  for (const auto& [what, bytes, checksum] : rows) {
    std::uint32_t value = kUntouched;
    EXPECT_EQ(GetTrueTypeKerningTableChecksum(View(bytes), &value), checksum != kUntouched);
    EXPECT_EQ(value, checksum) << what;
  }
}

}  // namespace
}  // namespace quillmark
