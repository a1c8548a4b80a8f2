#include <algorithm>
#include <sstream>

#include "resources/opened_suitcase.h"
#include "resources/printer_font_name.h"

namespace quillmark {
namespace {

std::string FileName(const std::string& name) {
  std::string in = static_cast<char>(name.size()) + name;
  Str255 out;
  GetPostScriptFontFileName(reinterpret_cast<const unsigned char*>(in.data()), out);
  return {reinterpret_cast<const char*>(out + 1), out[0]};
}

std::string Name(const FondBuilder& fond, unsigned char style, std::int32_t limit = 257) {
  const std::string bytes = fond.Build();
  return StyleMapping(AsBytes(bytes)).GetPrinterFontName(style, limit);
}

TEST(PrinterFontName, StyleIndex) {
  const std::pair<unsigned char, int> rows[] = {{1, 1},   {2, 2},   {4, 0},   {8, 4},   {16, 8},
                                                {64, 32}, {96, 16}, {91, 47}, {128, 0}, {255, 31}};
  for (const auto& [style, index] : rows) EXPECT_EQ(GetStyleIndex(style), index) << int{style};
}

TEST(PrinterFontName, FileNames) {
  // Words; digits that begin a name or a word, lie inside, or end the name; hyphens; other characters, which
  // are copied where letters are and dropped where no word has begun. "~" stands for a blank.
  std::istringstream rows(R"(
    Helvetica-BoldOblique=HelveBolObl Times-Roman=TimesRom Optima=Optim = helvetica=helve ITC-=
    ITC-AvantGarde-Demi=AvantGarDem ITC-ITC-Kabel=ITCKab itc-Kabel=itcKab Foo_Bar_Baz=Foo Name_=Name_
    MyriadMM_400_600_=MyriaMM _Name= _= ITC-_A=
    55Helvetica=55Hel Univers-55Bold=Unive5Bol Frutiger-45=Fruti45 Frutiger-456=Fruti46 Frutiger45=Fruti5
    Frutiger5=Fruti X9=X9 Bold9Italic=Bold9Ita A-1b=A1b A-1bc=A1
    Bodoni-=Bodon -Foo=Foo -= A--Bc=A-Bc A---Bc=A-Bc Gill-xyzw=Gillxyz
    B.c~d=B.c~d ~abc=)");
  for (std::string row; rows >> row;) {
    std::ranges::replace(row, '~', ' ');
    const auto split = row.find('=');
    EXPECT_EQ(FileName(row.substr(0, split)), row.substr(split + 1)) << row;
  }
  EXPECT_EQ(FileName("B\xA9rs\x7F"), "B?rs?");
  EXPECT_EQ(FileName(std::string(254, 'A')), std::string(254, 'A'));
  EXPECT_EQ(FileName(std::string(255, 'A')), std::string(254, 'A'));
}

TEST(PrinterFontName, ComposesStringOneAndTheSuffixList) {
  // "-Bold" read as numbers names no strings; 0 is string 1; a number without a string adds nothing; a suffix
  // list numbered from 128, or beyond the stored count, is none.
  const std::tuple<std::uint8_t, std::uint16_t, const char*> rows[] = {
      {1, 130, "Base"}, {3, 130, "Base-BoldObl"},  {0, 130, "Base"},
      {2, 130, "Base"}, {5, 130, "BaseBase-Bold"}, {130, 130, "Base"},
      {3, 2, "Base"},   {3, 3, "Base-BoldObl"},    {3, 0xFFFF, "Base-BoldObl"}};
  FondBuilder family(128);
  family.StyleString("Base").StyleString("-Bold").StyleString("\x02\x04").StyleString("Obl");
  family.StyleString(std::string("\x00\x63\x02", 3));
  for (int i = 6; i < 130; ++i) family.StyleString("");
  family.StyleString("\x02");
  for (const auto& [bold, count, name] : rows) {
    FondBuilder fond = family;
    fond.StyleIndex(1, bold).SetU16(54 + 58, count);
    EXPECT_EQ(Name(fond, 1), name) << int{bold} << ' ' << count;
    EXPECT_EQ(Name(fond, 0), "Base");
  }
}

TEST(PrinterFontName, StringsMustLieInsideTheRecord) {
  FondBuilder fond(128);
  fond.StyleString("Base").StyleString("\x03").StyleString("Bold").StyleIndex(1, 2);
  const std::size_t whole = fond.Build().size();
  // "Bold" is cut, the suffix list, "Base", the strings, the table.
  const std::pair<std::size_t, const char*> rows[] = {{0, "BaseBold"}, {1, "Base"}, {7, "Base"},
                                                      {8, ""},         {13, ""},    {80, ""}};
  for (const auto& [bytes, name] : rows) {
    FondBuilder shorter = fond;
    shorter.Truncate(whole - bytes);
    EXPECT_EQ(Name(shorter, 1), name) << bytes;
  }
  for (const std::uint32_t offset : {0xFFFFFFFFu, 0xFFFFFFC4u, static_cast<std::uint32_t>(whole)}) {
    FondBuilder elsewhere = fond;
    elsewhere.SetU32(24, offset);
    EXPECT_EQ(Name(elsewhere, 1), "") << offset;
  }
  // Offset 0 is followed like any other: string 1 then begins at byte 60, in the second entry.
  EXPECT_EQ(Name(FondBuilder(128).Association(9, 0, 1).Association(0x0341, 0x4243, 1), 0), "ABC");
}

TEST(PrinterFontName, KeepsToItsLimitAndToPrintableAscii) {
  FondBuilder fond(128);
  fond.StyleString("Ba\x8A\x1Fx").StyleString("\x03").StyleString("-B").StyleIndex(1, 2);
  const std::pair<int, const char*> rows[] = {{257, "Ba??x-B"}, {8, "Ba??x-B"}, {7, "Ba??x-"},
                                              {6, "Ba??x"},     {4, "Ba?"},     {1, ""}};
  for (const auto& [limit, name] : rows) EXPECT_EQ(Name(fond, 1, limit), name) << limit;
  // 256 characters do not fit a length byte.
  FondBuilder long_name(128);
  long_name.StyleString(std::string(200, 'a')).StyleString("\x03").StyleString(std::string(56, 'b'));
  long_name.StyleIndex(1, 2);
  EXPECT_EQ(Name(long_name, 1), std::string(200, 'a') + std::string(55, 'b'));
}

// With a bitmap of style 0, unless another size or style is asked for; double-byte for an ID from 16384.
FondBuilder Named(const std::string& name, std::int16_t family_id = 128, std::int16_t size = 9,
                  std::int16_t style = 0) {
  FondBuilder fond(family_id);
  fond.StyleString(name).StyleString("\x03").StyleString("-Bold").StyleIndex(1, 2);
  return fond.Association(size, style, 1);
}

TEST(PrinterFontSearch, FilesThatTheFamiliesNeed) {
  const std::string ryumin = "Ryumin-Light-83pv-RKSJ-H";
  const FondBuilder times = Named("Times");
  const FondBuilder outline = Named("Times", 128, 0);
  const FondBuilder both = Named("Times").Association(9, 1, 1);
  const std::pair<std::vector<FondBuilder>, std::vector<const char*>> rows[] = {
      {{both}, {"Times", "TimesBol"}},
      {{FondBuilder(both).Association(0, 0, 1)}, {"TimesBol"}},            // an outline covers its style
      {{times, FondBuilder(outline).Association(9, 1, 1)}, {"TimesBol"}},  // and that of a family before
      {{outline, both}, {"TimesBol"}},                                     // or behind
      {{times, times}, {"Times"}},
      // A PostScript name keeps the file name that it meets first, by style and then by family; having none
      // is not remembered.
      {{Named(ryumin)}, {"RyumiLig8RKSJH"}},
      {{Named(ryumin), Named(ryumin, 16384)}, {"RyumiLig8RKSJH"}},
      {{Named(ryumin, 16384), Named(ryumin)}, {"Ryumin-Light"}},
      {{Named("A-B-", 128, 9, 2), Named("A-B-", 16384)}, {"A-B"}},
      {{Named("A--", 16384)}, {"A-"}},
      {{Named("A-B", 16384)}, {}},
      {{Named("A-B", 16384), Named("A-B")}, {"AB"}},
      {{FondBuilder(16384).Association(9, 0, 1), Named("..A/Bcd")}, {}}};
  for (const auto& [fonds, names] : rows) {
    ResourceForkBuilder fork;
    std::int16_t id = 0;
    for (const FondBuilder& fond : fonds) fork.Add(kFond, ++id, fond.Build());
    const OpenedSuitcase file(fork);
    std::vector<std::string> paths;
    for (const char* name : names) paths.push_back(file.folder().Path(name));
    EXPECT_EQ(file->getPrinterFiles(), paths);
  }
}

}  // namespace
}  // namespace quillmark
