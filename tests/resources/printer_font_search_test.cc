#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "builders/fond_builder.h"
#include "resources/opened_file.h"

namespace quillmark {
namespace {

using testing::UnorderedElementsAre;

FondBuilder Family(const std::string& name, std::int16_t family_id = 128) {
  return FondBuilder(family_id).StyleString(name).StyleString("\x03").StyleString("-Bold").StyleIndex(1, 2);
}

TEST(PrinterFontSearch, NamesFollowTheRuleOfTheFamily) {
  struct Row {
    const char* what;
    FondBuilder fond;
    std::string expected;
  };
  const Row rows[] = {
      {"single-byte", Family("Ryumin-Light-83pv-RKSJ-H"), "RyumiLig8RKSJH"},
      {"double-byte", Family("Ryumin-Light-83pv-RKSJ-H", 16384), "Ryumin-Light"},
      {"double-byte with a second hyphen at the end", Family("Ryumin-Light-", 16384), "Ryumin-Light"},
      {"double-byte with one hyphen", Family("Ryumin-Light", 16384), ""},
      {"no style table", FondBuilder(128).Association(9, 0, 1), ""},
  };
  for (const Row& row : rows) {
    const OpenedFile file(row.fond.Build());
    const ResourceHandle fond(file.Fond());
    EXPECT_EQ(file->getPSPrinterNameForFOND(fond.get(), 0), row.expected) << row.what;
  }
}

TEST(PrinterFontSearch, TheFirstFileNameOfAPostScriptNameStays) {
  const std::string name = "Ryumin-Light-83pv";
  const auto families = ResourceForkBuilder()
                            .Add(kFond, 1, Family(name).Build())
                            .Add(kFond, 2, Family(name, 16384).Build())
                            .Add(kFond, 3, Family("A-B", 16384).Build())
                            .Add(kFond, 4, Family("A-B").Build());
  const auto ask = [&](std::initializer_list<std::int16_t> ids) {
    const OpenedFile file(families);
    std::string last;
    for (const std::int16_t id : ids) {
      last = file->getPSPrinterNameForFOND(ResourceHandle(file.Fond(id)).get(), 0);
    }
    return last;
  };
  EXPECT_EQ(ask({1, 2}), "RyumiLig8");
  EXPECT_EQ(ask({2, 1}), "Ryumin-Light");
  EXPECT_EQ(ask({3}), "");
  EXPECT_EQ(ask({3, 4}), "AB");  // having none is not remembered
  EXPECT_EQ(ask({4, 3}), "AB");
}

TEST(PrinterFontSearch, FilesThatTheFamiliesNeed) {
  struct Row {
    const char* what;
    std::vector<std::string> fonds;
    std::vector<std::string> names;
  };
  const auto times = [](std::initializer_list<std::pair<int, int>> sizes_and_styles) {
    FondBuilder fond = Family("Times");
    for (const auto& [size, style] : sizes_and_styles) {
      fond.Association(static_cast<std::int16_t>(size), static_cast<std::int16_t>(style), 1);
    }
    return fond.Build();
  };
  const Row rows[] = {
      {"a file a style", {times({{9, 0}, {9, 1}})}, {"Times", "TimesBol"}},
      {"an outline covers its style", {times({{9, 0}, {0, 0}, {9, 1}})}, {"TimesBol"}},
      {"or that of a family before", {times({{9, 0}}), times({{0, 0}, {9, 1}})}, {"TimesBol"}},
      {"or that of a family behind", {times({{0, 0}}), times({{9, 0}, {9, 1}})}, {"TimesBol"}},
      {"families share a file", {times({{9, 0}}), times({{9, 0}, {9, 2}})}, {"Times"}},
      {"no file without a name", {FondBuilder(1).Association(9, 0, 1).Build()}, {}},
      {"no file elsewhere", {Family("..A/Bcd").Association(9, 0, 1).Build()}, {}},
  };
  for (const Row& row : rows) {
    ResourceForkBuilder fork;
    std::int16_t id = 128;
    for (const std::string& fond : row.fonds) fork.Add(kFond, id++, fond);
    const OpenedFile file(fork);
    std::vector<std::string> paths;
    for (const std::string& name : row.names) paths.push_back(file.folder().Path(name));
    EXPECT_THAT(file->getPrinterFiles(), testing::UnorderedElementsAreArray(paths)) << row.what;
  }
}

TEST(PrinterFontSearch, CachesNamesByStyleThenFamily) {
  // Style 0 of the second family comes before style 1 of the first, and both compose the same name.
  const auto roman = FondBuilder(1).Association(9, 1, 1).StyleString("R-Lig-83").Build();
  const auto kanji = FondBuilder(16384).Association(9, 0, 1).StyleString("R-Lig-83").Build();
  const OpenedFile file(ResourceForkBuilder().Add(kFond, 1, roman).Add(kFond, 2, kanji));
  EXPECT_THAT(file->getPrinterFiles(), UnorderedElementsAre(file.folder().Path("R-Lig")));
}

}  // namespace
}  // namespace quillmark
