#include "analysis/name_table.h"

#include <gtest/gtest.h>

#include <optional>
#include <variant>

#include "analysis/name_record.h"
#include "builders/big_endian.h"
#include "builders/sfnt_builder.h"

namespace quillmark {
namespace {

using big_endian::Set16;
using big_endian::Set32;
using big_endian::Utf16;

// No names, and the kind of the fault, where the table gives none.
struct Read {
  FaceNames names;
  std::optional<NameFault::Kind> fault;
};

Read ReadNames(const std::string& font) {
  auto names = getMetaDataFromNamesTable(SfntData(AsBytes(font)));
  if (const auto* fault = std::get_if<NameFault>(&names)) return {{}, fault->kind};
  return {std::get<FaceNames>(std::move(names)), std::nullopt};
}

std::string Family(const SfntBuilder& builder) { return ReadNames(builder.Build()).names.family.str(); }

// A font whose only record, of family name, has these IDs and bytes.
std::string DecodedAs(std::uint16_t platform, std::uint16_t encoding, std::uint16_t language,
                      const std::string& bytes) {
  return Family(SfntBuilder().Name(platform, encoding, language, 1, bytes));
}

std::string Line(const SfntBuilder& font) {
  const FaceNames names = ReadNames(font.Build()).names;
  return names.foundry.str() + "|" + names.family.str() + "|" + names.version.str() + "|" +
         names.post_script_name.str() + "|" + names.display_name.str() + "|" + names.full_name.str() + "|" +
         names.windows_full_name.str();
}

TEST(NameTable, FillsEveryNameAndFallsBack) {
  SfntBuilder all;
  all.MacName(0, "Copyright").MacName(1, "Family").MacName(4, "Full (Name)").MacName(5, "Version 1");
  all.MacName(6, "Post{Script}<%>").MacName(8, "Maker").MacName(16, "Typographic");
  EXPECT_EQ(Line(all.WindowsName(4, u"Windows Name")),
            "Maker|Typographic|Version 1|Post-Script-<%>|Post{Script}<%>|Full (Name)|Windows Name");
  EXPECT_EQ(Line(SfntBuilder().MacName(0, "Copyright").MacName(4, "Full [x]/y")),
            "Copyright|||Full--x--y|Full [x]/y|Full [x]/y|Full [x]/y");
}

TEST(NameTable, PrefersRecordsByPlatformAndLanguage) {
  const SfntBuilder german = SfntBuilder().WindowsName(1, u"German", 0x407);
  const SfntBuilder unicode = SfntBuilder().UnicodeName(1, u"Uni");
  const SfntBuilder us = SfntBuilder().WindowsName(1, u"US");
  const std::pair<SfntBuilder, const char*> rows[] = {
      {SfntBuilder(unicode).MacName(0, "C").MacName(1, "Mac").WindowsName(1, u"Win"), "Uni"},
      {SfntBuilder(unicode).MacName(1, "Mac"), "Mac"},  // the first Macintosh record itself overwrites
      {SfntBuilder(german).WindowsName(1, u"US").WindowsName(1, u"US2"), "US2"},
      {SfntBuilder(german).WindowsName(1, u"French", 0x40C), "German"},
      {SfntBuilder(us).Name(3, 0, 0x407, 1, "Symbol"), "Symbol"},  // encoding 0, whatever the language
      {SfntBuilder().MacName(16, "Typographic").MacName(1, "Plain"), "Typographic"},
      // A family name that may overwrite replaces the typographic one as well.
      {SfntBuilder().UnicodeName(16, u"Typographic").UnicodeName(1, u"Plain"), "Plain"},
  };
  for (const auto& [font, family] : rows) EXPECT_EQ(Family(font), family);
  // The first Windows full name of any language; no PostScript name that is not ASCII.
  EXPECT_EQ(
      Line(
          SfntBuilder().WindowsName(6, u"Caf\u00E9").WindowsName(4, u"Deutsch", 0x407).WindowsName(4, u"US")),
      "|||US|US|US|Deutsch");
}

TEST(NameTable, ChoosesTheFormOfTheTextByItsIds) {
  const struct {
    std::uint16_t platform, encoding, language;
    bool double_byte;
  } rows[] = {{0, 0, 0, false},     {0, 1, 0, true},  {0, 4, 0, true},   {0, 5, 0, false},
              {1, 0, 0, false},     {1, 1, 11, true}, {2, 1, 0, false},  {3, 0, 0, false},
              {3, 1, 0x409, true},  {3, 10, 0, true}, {3, 11, 0, false}, {4, 0, 0, true},
              {0xFFFF, 1, 0, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.platform << "," << row.encoding << "," << row.language);
    EXPECT_EQ(DecodedAs(row.platform, row.encoding, row.language, "AB"), row.double_byte ? "\u4142" : "AB");
  }
}

TEST(NameTable, DecodesText) {
  EXPECT_EQ(DecodedAs(3, 1, 0, Utf16(u"A\u00E9\U0001F600")), "A\u00E9\U0001F600");
  EXPECT_EQ(DecodedAs(3, 1, 0, Utf16(std::u16string(u"A\0B", 3)) + "C"), "A");
  EXPECT_EQ(DecodedAs(3, 1, 0, std::string("\xD8\x3D\0A", 4)), "") << "a lone surrogate";
  EXPECT_EQ(DecodedAs(1, 0, 0, std::string("Caf\x8E\x1F\x7F\0x", 8)), "Caf??\x7F");
  EXPECT_EQ(DecodedAs(1, 0, 0, std::string(1024, 'x')), std::string(1023, 'x'));
}

TEST(NameTable, AJapaneseRecordTurnsTheSingleByteOnesBehindItToShiftJis) {
  const SfntBuilder font = SfntBuilder()
                               .Name(1, 0, 0, 0, "\x83\x41")    // before: two bytes above 7F and 41
                               .Name(1, 1, 11, 99, "\x83\x41")  // read as one 16-bit unit
                               .Name(1, 0, 5, 1, "\x83\x41")    // katakana A
                               .Name(1, 0, 0, 8, "\x83");       // cut: skipped
  EXPECT_EQ(Line(font), "?A|\u30A2|||||");
}

// The name table's records begin 6 bytes into it.
TEST(NameTable, FieldsOfARecordAreSigned) {
  const std::string font = SfntBuilder().MacName(5, "unused.family").Table("tail", "tail").Build();
  const std::size_t table = TablePosition(font, "name");
  const struct {
    const char* what;
    std::uint32_t string_offset, length, offset;
    const char* expected;
  } rows[] = {
      {"16 bytes before the storage", 18 + 23, 6, 0xFFF0, "family"},
      {"before the table", 18, 6, 0xFFED, ""},
      {"to the end of the font", 18, 18, 0, "unused.family"},  // a zero byte and the next table follow
      {"past the end of the font", 18, 19, 0, ""},
  };
  for (const auto& row : rows) {
    std::string spoiled = font;
    Set16(spoiled, table + 4, row.string_offset);
    Set16(spoiled, table + 14, row.length);
    Set16(spoiled, table + 16, row.offset);
    EXPECT_EQ(ReadNames(spoiled).names.version.str(), row.expected) << row.what;
  }
}

TEST(NameTable, TheTableMustBeValidAndHoldText) {
  const std::string font = SfntBuilder().MacName(1, "Family").Table("tail", "tail").Build();
  const std::size_t table = TablePosition(font, "name");
  const std::size_t entry = EntryPosition(font, "name");
  const auto size = static_cast<std::uint32_t>(font.size());
  const auto at = static_cast<std::uint32_t>(table);
  const auto with_entry = [&](std::uint32_t offset, std::uint32_t length) {
    std::string spoiled = font;
    Set32(spoiled, entry + 8, offset);
    Set32(spoiled, entry + 12, length);
    return spoiled;
  };
  const auto with = [&](std::size_t place, std::uint32_t value) {
    std::string spoiled = font;
    Set16(spoiled, place, value);
    return spoiled;
  };
  const struct {
    const char* what;
    std::string font;
    std::optional<NameFault::Kind> fault;
  } rows[] = {
      {"records are bounded by the font, not by the length", with_entry(at, 0), std::nullopt},
      {"a sum that wraps", with_entry(at, 0u - at), std::nullopt},
      {"the walk of the most records ends with the font", with(table + 2, 0x7FFF), std::nullopt},
      {"nothing", "", NameFault::kNoDirectory},
      {"no tables", with(4, 0), NameFault::kNoTables},
      {"a negative number of tables", with(4, 0x8000), NameFault::kTooManyTables},
      {"entries cut off", font.substr(0, entry + 8), NameFault::kCutDirectory},
      {"no name table", SfntBuilder().Table("tail", "tail").Build(), NameFault::kNoTable},
      {"at offset 0", with_entry(0, 30), NameFault::kOffsetZero},
      {"past the end", with_entry(at, size), NameFault::kPastEnd},
      {"at the end", with_entry(size, 0), NameFault::kPastEnd},
      {"header cut off", with_entry(size - 4, 0), NameFault::kCutHeader},
      {"no records", with(table + 2, 0), NameFault::kNoNames},
      {"a negative number of records", with(table + 2, 0x8000), NameFault::kNoNames},
      {"records cut off", with_entry(at, 0).substr(0, table + 17), NameFault::kCutRecords},
      {"text outside", with(table + 14, 0x7FFF), NameFault::kNoTextInside},
      {"text that is none", SfntBuilder().Name(3, 1, 0, 1, "\xD8\x3D").Build(), NameFault::kNoValidText},
  };
  for (const auto& row : rows) {
    const Read read = ReadNames(row.font);
    EXPECT_EQ(read.fault, row.fault) << row.what;
    EXPECT_EQ(read.names.family.str(), row.fault ? "" : "Family") << row.what;
  }
}

}  // namespace
}  // namespace quillmark
