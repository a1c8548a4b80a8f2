#include "analysis/windows_font_file_name.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(WindowsFontFileName, ReplacesKnownExtensions) {
  const struct {
    const char *name, *metrics, *outlines;  // "-": refused
  } rows[] = {{"TIMES.PFB", "TIMES.mmm", "-"},
              {"Times.pfm", "-", "Times.pfb"},
              {"Times.afm", "-", "-"},
              {"ab.pfb", "ab.mmm", "-"},
              {"a.b.Mmm", "-", "a.b.pfb"},
              {"a.pfb", "-", "-"},
              {"abcpfb", "-", "-"},
              {"", "-", "-"}};
  for (const auto& row : rows) {
    OmString metrics = "-";
    OmString outlines = "-";
    EXPECT_EQ(GetWindowsMMMFontNameFromPrinterFontName(row.name, &metrics), *row.metrics != '-') << row.name;
    EXPECT_EQ(GetWindowsPSPrinterFontNameFromFontName(row.name, &outlines), *row.outlines != '-') << row.name;
    EXPECT_EQ(metrics.str() + outlines.str(), std::string(row.metrics) + row.outlines);
  }
}

}  // namespace
}  // namespace quillmark
