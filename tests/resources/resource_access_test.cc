#include "resources/resource_access.h"

#include "resources/opened_suitcase.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

TEST(ResourceAccess, AnswersForNoFile) {
  EXPECT_EQ(AllocateResourceFile(nullptr, true), nullptr);
  FreeResourceFile(nullptr);
  EXPECT_FALSE(is_psfont(nullptr) || is_psprinterfont(nullptr) || hasValidResourcePSHeader(nullptr));
  EXPECT_EQ(countResType(nullptr, kFond), 0);
  EXPECT_EQ(getHandleOfTypeAndResID(nullptr, kFond, 1), nullptr);
  EXPECT_EQ(getHandleOfTypeAndIndex(nullptr, kFond, 1), nullptr);
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
    EXPECT_EQ(has_OTTO_Flag_inResource(AsBytes(outline)), otto) << outline << family;
    EXPECT_EQ(has_ttc_true_Flag(AsBytes(outline), family), true_type) << outline << family;
    const OpenedSuitcase file(ResourceForkBuilder().Add(kSfnt, 40, outline));
    EXPECT_EQ(hasValidResourcePSHeader(file.get()), type_1) << outline << family;
  }
}

}  // namespace
}  // namespace quillmark
