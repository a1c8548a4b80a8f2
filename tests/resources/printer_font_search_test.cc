#include <algorithm>
#include <random>
#include <set>
#include <utility>

#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

FondBuilder FamilyNamed(const std::string& name, std::int16_t family_id = 128) {
  return FondBuilder(family_id).StyleString(name).StyleString("\x03").StyleString("-Bold").StyleIndex(1, 2);
}

TEST(PrinterFontSearch, NamesFollowTheRuleOfTheFamilyAndTheFirstOfAPostScriptNameStays) {
  const std::string name = "Ryumin-Light-83pv-RKSJ-H";
  const auto families = ResourceForkBuilder()
                            .Add(kFond, 1, FamilyNamed(name).Build())
                            .Add(kFond, 2, FamilyNamed(name, 16384).Build())
                            .Add(kFond, 3, FamilyNamed("A-B", 16384).Build())
                            .Add(kFond, 4, FamilyNamed("A-B").Build())
                            .Add(kFond, 5, FamilyNamed("A-B-", 16384).Build())
                            .Add(kFond, 6, FondBuilder(16384).Build());  // without a style table
  // FONDs asked in order, and the last answer. Having none is not remembered.
  const std::pair<std::vector<std::int16_t>, const char*> rows[] = {{{1}, "RyumiLig8RKSJH"},
                                                                    {{1, 2}, "RyumiLig8RKSJH"},
                                                                    {{2, 1}, "Ryumin-Light"},
                                                                    {{3}, ""},
                                                                    {{3, 4}, "AB"},
                                                                    {{4, 3}, "AB"},
                                                                    {{5}, "A-B"},
                                                                    {{6}, ""}};
  for (const auto& [ids, expected] : rows) {
    const OpenedSuitcase file(families);
    std::string last;
    for (const std::int16_t id : ids) {
      last = Family(file.get(), file.Fond(id)).getPSPrinterNameForFOND(0);
    }
    EXPECT_EQ(last, expected) << testing::PrintToString(ids);
  }
}

TEST(PrinterFontSearch, FilesThatTheFamiliesNeed) {
  const auto times = [](std::int16_t size) { return FamilyNamed("Times").Association(size, 0, 1); };
  const std::pair<std::vector<FondBuilder>, const char*> rows[] = {
      {{times(9).Association(9, 1, 1)}, "Times TimesBol "},
      {{times(9).Association(0, 0, 1).Association(9, 1, 1)}, "TimesBol "},  // an outline covers its style
      {{times(9), times(0).Association(9, 1, 1)}, "TimesBol "},             // and that of a family before
      {{times(0), times(9).Association(9, 1, 1)}, "TimesBol "},             // or behind
      {{times(9), times(9)}, "Times "},
      {{FondBuilder(1).Association(9, 0, 1), FamilyNamed("..A/Bcd").Association(9, 0, 1)}, ""}};
  for (const auto& [fonds, expected] : rows) {
    ResourceForkBuilder fork;
    std::int16_t id = 0;
    for (const FondBuilder& fond : fonds) fork.Add(kFond, ++id, fond.Build());
    const OpenedSuitcase file(fork);
    std::vector<std::string> paths = file->getPrinterFiles();
    std::ranges::sort(paths);
    std::string names;
    for (const std::string& path : paths) names += path.substr(file.folder().Path("").size()) + ' ';
    EXPECT_EQ(names, expected);
  }
}

// The search as it is stated, a style after the other with each family that has it, against the one that
// loads a family once; families of few names meet in every order.
TEST(PrinterFontSearch, FindsWhatAskingStyleByStyleFinds) {
  std::minstd_rand random(7);
  const auto below = [&](unsigned n) { return static_cast<std::int16_t>(random() % n); };
  for (int round = 0; round < 150; ++round) {
    ResourceForkBuilder fork;
    for (std::int16_t id = 1; id <= 3; ++id) {
      FondBuilder fond = FamilyNamed(below(2) ? "R-Lig-83" : "A-B", below(2) ? 128 : 16384);
      for (int n = below(4); n >= 0; --n) fond.Association(below(2), below(3), 1);
      fork.Add(kFond, id, fond.Build());
    }
    const OpenedSuitcase file(fork);
    std::set<std::string> needed;
    std::set<std::string> covered;
    for (const std::int16_t style : file->getSortedStyles()) {
      for (const std::int16_t id : file->getSortedResIDsForType(kFond)) {
        const Family family(file.get(), file.Fond(id));
        if (!family.styleExists(style)) continue;
        const auto path = file->PathOfPrinterFile(family.getPSPrinterNameForFOND(style));
        if (path) (family.shouldHavePrinterFile(style) ? needed : covered).insert(*path);
      }
    }
    for (const std::string& path : covered) needed.erase(path);
    const ResourceFileHolder again(QuillmarkResourceFile::initWithFile(file.path(), true));  // no name cached
    EXPECT_THAT(again.get()->getPrinterFiles(), testing::UnorderedElementsAreArray(needed)) << round;
  }
}

}  // namespace
}  // namespace quillmark
