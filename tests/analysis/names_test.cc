// The names of a font: read from its name table, compared, and as Windows names its files.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <tuple>
#include <variant>

#include "analysis/name_match.h"
#include "analysis/name_record.h"
#include "analysis/name_table.h"
#include "analysis/windows_font_file_name.h"
#include "builders/big_endian.h"
#include "builders/sfnt_builder.h"

namespace quillmark {
namespace {

using big_endian::Utf16;

// No names where the table gives a fault.
FaceNames NamesOf(const std::string& font) {
  const auto read = getMetaDataFromNamesTable(SfntData(AsBytes(font)));
  const auto* const names = std::get_if<FaceNames>(&read);
  return names ? *names : FaceNames();
}

// A font whose only record, of family name, has these IDs and bytes.
std::string DecodedAs(std::uint16_t platform, std::uint16_t encoding, std::uint16_t language,
                      const std::string& bytes) {
  return NamesOf(SfntBuilder().Name(platform, encoding, language, 1, bytes).Build()).family.str();
}

TEST(NameTable, ChoosesAmongRecordsAndFallsBack) {
  const auto mac = [](std::uint16_t id, const char* text) { return SfntBuilder().MacName(id, text); };
  const SfntBuilder german = SfntBuilder().WindowsName(1, u"German", 0x407);
  const SfntBuilder unicode = SfntBuilder().UnicodeName(1, u"Uni");
  SfntBuilder all;
  all.MacName(0, "Copyright").MacName(1, "Family").MacName(4, "Full (Name)").MacName(5, "Version 1");
  all.MacName(6, "Post{Script}<%>").MacName(8, "Maker").MacName(16, "Typographic");
  const std::pair<SfntBuilder, const char*> rows[] = {
      {all.WindowsName(4, u"Windows Name"),
       "Maker|Typographic|Version 1|Post-Script-<%>|Post{Script}<%>|Full (Name)|Windows Name"},
      {mac(0, "Copyright").MacName(4, "Full [x]/y"),
       "Copyright|||Full--x--y|Full [x]/y|Full [x]/y|Full [x]/y"},
      {SfntBuilder(unicode).MacName(0, "C").MacName(1, "Mac").WindowsName(1, u"Win"), "C|Uni|||||"},
      {SfntBuilder(unicode).MacName(1, "Mac"), "|Mac|||||"},  // the first Macintosh record itself overwrites
      {SfntBuilder(german).WindowsName(1, u"US").WindowsName(1, u"US2"), "|US2|||||"},
      {SfntBuilder(german).WindowsName(1, u"French", 0x40C), "|German|||||"},
      {SfntBuilder(german).Name(3, 0, 0x407, 1, "Symbol"), "|Symbol|||||"},  // encoding 0, any language
      {mac(16, "Typographic").MacName(1, "Plain"), "|Typographic|||||"},
      // A family name that may overwrite replaces the typographic one as well.
      {SfntBuilder().UnicodeName(16, u"Typographic").UnicodeName(1, u"Plain"), "|Plain|||||"},
      // The first Windows full name of any language; no PostScript name that is not ASCII.
      {SfntBuilder().WindowsName(6, u"Caf\u00E9").WindowsName(4, u"Deutsch", 0x407).WindowsName(4, u"US"),
       "|||US|US|US|Deutsch"},
      // A Japanese record, read as 16-bit units, turns those of single bytes behind it to Shift-JIS.
      {mac(0, "\x83\x41").Name(1, 1, 11, 99, "\x83\x41").Name(1, 0, 5, 1, "\x83\x41").MacName(8, "\x83"),
       "?A|\u30A2|||||"},  // the last is cut in a character, and skipped
  };
  for (const auto& [font, line] : rows) {
    const FaceNames names = NamesOf(font.Build());
    EXPECT_EQ(names.foundry.str() + "|" + names.family.str() + "|" + names.version.str() + "|" +
                  names.post_script_name.str() + "|" + names.display_name.str() + "|" +
                  names.full_name.str() + "|" + names.windows_full_name.str(),
              line);
  }
}

TEST(NameTable, ChoosesTheFormOfTheTextByItsIds) {
  using Ids = std::array<std::uint16_t, 3>;  // platform, encoding, language
  for (const auto& [platform, encoding, language] :
       {Ids{0, 0, 0}, {0, 5, 0}, {1, 0, 0}, {2, 1, 0}, {3, 0, 0}, {3, 11, 0}, {0xFFFF, 1, 0}}) {
    EXPECT_EQ(DecodedAs(platform, encoding, language, "AB"), "AB") << platform << " " << encoding;
  }
  for (const auto& [platform, encoding, language] :
       {Ids{0, 1, 0}, {0, 4, 0}, {1, 1, 11}, {3, 1, 0x409}, {3, 10, 0}, {4, 0, 0}}) {
    EXPECT_EQ(DecodedAs(platform, encoding, language, "AB"), "\u4142") << platform << " " << encoding;
  }
}

TEST(NameTable, DecodesText) {
  EXPECT_EQ(DecodedAs(3, 1, 0, Utf16(u"A\u00E9\U0001F600")), "A\u00E9\U0001F600");
  EXPECT_EQ(DecodedAs(3, 1, 0, Utf16(std::u16string(u"A\0B", 3)) + "C"), "A");
  EXPECT_EQ(DecodedAs(1, 0, 0, std::string("Caf\x8E\x1F\x7F\0x", 8)), "Caf??\x7F");
  EXPECT_EQ(DecodedAs(1, 0, 0, std::string(1024, 'x')), std::string(1023, 'x'));
}

std::string With(std::string font, std::size_t at, std::uint32_t value) {
  big_endian::Set32(font, at, value);
  return font;
}

// The record's length and offset lie 14 bytes into the table, before them the offset of the storage.
TEST(NameTable, FieldsOfARecordAreSigned) {
  const std::string font = SfntBuilder().MacName(5, "unused.family").Table("tail", "tail").Build();
  const std::size_t table = TablePosition(font, "name");
  std::string late = font;
  big_endian::Set16(late, table + 4, 18 + 23);
  const std::pair<std::string, const char*> rows[] = {
      {With(late, table + 14, 0x6FFF0), "family"},          // 16 bytes before the storage
      {With(font, table + 14, 0x6FFED), ""},                // before the table
      {With(font, table + 14, 18 << 16), "unused.family"},  // to the end: a zero byte, the next table
      {With(font, table + 14, 19 << 16), ""},               // past it
  };
  for (const auto& [spoiled, version] : rows) EXPECT_EQ(NamesOf(spoiled).version.str(), version);
}

TEST(NameTable, TheTableMustBeValidAndHoldText) {
  const std::string font = SfntBuilder().MacName(1, "Family").Table("tail", "tail").Build();
  const auto table = static_cast<std::uint32_t>(TablePosition(font, "name"));
  const auto size = static_cast<std::uint32_t>(font.size());
  const std::size_t offset = EntryPosition(font, "name") + 8;
  const std::size_t length = offset + 4;
  const std::tuple<const char*, std::string, std::optional<NameFault::Kind>> rows[] = {
      {"records are bounded by the font, not by the length", With(font, length, 0), std::nullopt},
      {"a sum that wraps", With(font, length, 0u - table), std::nullopt},
      {"the walk of the most records ends with the font", With(font, table, 0x7FFF), std::nullopt},
      {"nothing", "", NameFault::kNoDirectory},
      {"no tables", With(font, 4, 0), NameFault::kNoTables},
      {"a negative number of tables", With(font, 4, 0x80000000), NameFault::kTooManyTables},
      {"entries cut off", font.substr(0, offset), NameFault::kCutDirectory},
      {"no name table", SfntBuilder().Table("tail", "tail").Build(), NameFault::kNoTable},
      {"at offset 0", With(font, offset, 0), NameFault::kOffsetZero},
      {"past the end", With(font, length, size), NameFault::kPastEnd},
      {"at the end", With(With(font, offset, size), length, 0), NameFault::kPastEnd},
      {"header cut off", With(With(font, offset, size - 4), length, 0), NameFault::kCutHeader},
      {"no records", With(font, table, 0), NameFault::kNoNames},
      {"a negative number of records", With(font, table, 0x8000), NameFault::kNoNames},
      {"records cut off", With(font, length, 0).substr(0, table + 17), NameFault::kCutRecords},
      {"text outside", With(font, table + 14, 0x7FFF0000), NameFault::kNoTextInside},
      {"a lone surrogate", SfntBuilder().Name(3, 1, 0, 1, "\xD8\x3D").Build(), NameFault::kNoValidText},
  };
  for (const auto& [what, bytes, expected] : rows) {
    const auto read = getMetaDataFromNamesTable(SfntData(AsBytes(bytes)));
    const auto* const fault = std::get_if<NameFault>(&read);
    EXPECT_EQ(fault ? std::optional(fault->kind) : std::nullopt, expected) << what;
  }
}

TEST(NameMatch, ComparesLettersAndDigitsUpToTheSecondHyphen) {
  EXPECT_EQ(GFontToolUtils::StripCharsAndNormalizeString("Qui\xC3\xA9[@`{/:09AZ-az-Black"), "Qui09AZaz");
  EXPECT_TRUE(GFontToolUtils::DoPostScriptNamesMatch("Quill-Bold-Black", "QuillBold", false));
  EXPECT_FALSE(GFontToolUtils::DoPostScriptNamesMatch("Quill-Bold", "QuillBold", true));
}

TEST(WindowsFontFileName, ReplacesKnownExtensions) {
  const std::pair<const char*, const char*> rows[] = {
      {"TIMES.PFB", "TIMES.mmm"}, {"ab.pfb", "ab.mmm"}, {"Times.pfm", "Times.pfb"},
      {"a.b.Mmm", "a.b.pfb"},     {"a.pfb", ""},        {"abcpfb", ""}};
  for (const auto& [name, expected] : rows) {
    OmString metrics;
    OmString outlines;
    GetWindowsMMMFontNameFromPrinterFontName(name, &metrics);
    GetWindowsPSPrinterFontNameFromFontName(name, &outlines);
    EXPECT_EQ(metrics.str() + outlines.str(), expected);
  }
}

}  // namespace
}  // namespace quillmark
