#include "resources/resource_access.h"

#include <filesystem>

#include "resources/opened_file.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

constexpr ResType kPost = FourCharCode("POST");

TEST(ResourceAccess, AnswersForNoFile) {
  EXPECT_EQ(AllocateResourceFile(nullptr, true), nullptr);
  FreeResourceFile(nullptr);
  EXPECT_FALSE(is_psfont(nullptr) || is_psprinterfont(nullptr) || hasValidResourcePSHeader(nullptr));
  EXPECT_FALSE(has_OTTO_Flag_inResource(nullptr, nullptr, 0) || has_ttc_true_Flag(nullptr, nullptr, 0));
  EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(nullptr, nullptr, 0), -1);
  EXPECT_EQ(getStyleFromStyleIndex(nullptr, nullptr, 0), -1);
  EXPECT_EQ(getCountOfUniqueStyles(nullptr, nullptr), 0);
  EXPECT_EQ(CreatePrinterPath(nullptr, nullptr, 0), nullptr);
}

TEST(ResourceAccess, OpensAPlatformStringAndTellsFilesByTheirTypes) {
  const TempFolder folder;
  const auto holds = [&](const ResourceForkBuilder& fork) {
    const std::string path = folder.Write("Süd.suit", fork.Build());
    const auto text = Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
    const ResourceFileHolder file(AllocateResourceFile(text.get(), true));
    return std::vector<bool>{FileHasPOSTsInResourceFork(file.get()), is_psprinterfont(file.get()),
                             FileHasFONDsInResourceFork(file.get()), is_psfont(file.get())};
  };
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kPost, 501, "x")), ElementsAre(1, 1, 0, 0));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kPost, 502, "x")), ElementsAre(1, 0, 0, 0));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kFond, 1, "x").Add(kNfnt, 501, "x")), ElementsAre(0, 0, 1, 1));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kSfnt, 1, "x").AddEmptyType(kFond)), ElementsAre(0, 0, 0, 0));
}

TEST(ResourceAccess, TellsOutlinesByTheirFirstBytes) {
  const std::string version("\0\1\0\0", 4);
  const std::tuple<std::string, const char*, bool, bool, bool> rows[] = {
      {"OTTO", "Family", true, false, false},  {"OTT", "Family", false, false, false},
      {"typ1", "Family", false, false, true},  {"typ", "Family", false, false, false},
      {version, "A-CID", false, true, false},  {version.substr(0, 3), "x", false, false, false},
      {"true", "Family", false, true, false},  {"true", "A-CIDx", false, false, false},
      {"true", "xCID-B", false, false, false}, {"true", "CID-Bx", false, true, false},
      {"true", "xA-CID", false, true, false},  {"ttcf", "Family", false, false, false}};
  for (const auto& [outline, family, otto, true_type, type_1] : rows) {
    const std::string fond = FondBuilder(128).Association(0, 1, 40).Build();
    const OpenedFile file(ResourceForkBuilder().Add(kFond, 128, fond, family).Add(kSfnt, 40, outline));
    const ResourceHandle handle(file.Fond());
    EXPECT_EQ(has_OTTO_Flag_inResource(file.get(), handle.get(), 1), otto) << outline << family;
    EXPECT_EQ(has_ttc_true_Flag(file.get(), handle.get(), 1), true_type) << outline << family;
    EXPECT_EQ(hasValidResourcePSHeader(file.get()), type_1) << outline << family;
    EXPECT_FALSE(has_ttc_true_Flag(file.get(), handle.get(), 0)) << outline << family;
  }
  // No entry means ID -1, which may exist.
  const OpenedFile last(ResourceForkBuilder().Add(kSfnt, -1, "true"));
  EXPECT_TRUE(has_ttc_true_Flag(last.get(), nullptr, 0));
}

TEST(ResourceAccess, PrinterPathNamesAnExistingFileBesideTheSuitcase) {
  const auto path_of = [](const OpenedFile& file, int style) {
    const ResourceHandle fond(file.Fond());
    return OmString(Adopt(CreatePrinterPath(file.get(), fond.get(), style)).get()).str();
  };
  FondBuilder times(128);
  times.Association(9, 0, 1).Association(0, 2, 1);
  times.StyleString("Times").StyleString("\x03").StyleString("-Bold").StyleIndex(1, 2);
  const OpenedFile file(times.Build());
  EXPECT_EQ(path_of(file, 0), "");
  file.folder().Write("Times", "printer font");
  EXPECT_EQ(path_of(file, 0), file.folder().Path("Times"));
  EXPECT_EQ(path_of(file, 4), file.folder().Path("Times"));  // no entry of that style: a file all the same
  EXPECT_EQ(path_of(file, 2), "");                           // an outline inside
  std::filesystem::create_directory(file.folder().Path("TimesBol"));
  EXPECT_EQ(path_of(file, 1), "");

  const OpenedFile outside(FondBuilder(16384).StyleString("x/Aaa-b-").Build());
  outside.folder().Write("x/Aaa-b", "printer font");
  EXPECT_EQ(path_of(outside, 0), "");
  EXPECT_EQ(path_of(OpenedFile(FondBuilder(128).Build()), 0), "");  // no name
}

}  // namespace
}  // namespace quillmark
