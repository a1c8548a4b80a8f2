#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

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
