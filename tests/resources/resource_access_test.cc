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
  const std::tuple<std::string, const char*, const char*> rows[] = {
      {"OTTO", "Family", "OTTO"}, {"OTT", "Family", ""},      {"typ1", "Family", "typ1"},
      {"typ", "Family", ""},      {version, "A-CID", "true"}, {version.substr(0, 3), "x", ""},
      {"true", "Family", "true"}, {"true", "A-CIDx", ""},     {"true", "xCID-B", ""},
      {"true", "CID-Bx", "true"}, {"true", "xA-CID", "true"}, {"ttcf", "Family", ""}};
  for (const auto& [outline, family, kind] : rows) {
    const TempFolder folder;
    const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(
        folder.Write("a", ResourceForkBuilder().Add(kSfnt, 40, outline).Build()), true));
    std::string found = has_OTTO_Flag_inResource(AsBytes(outline)) ? "OTTO" : "";
    if (has_ttc_true_Flag(AsBytes(outline), family)) found += "true";
    if (hasValidResourcePSHeader(file.get())) found += "typ1";
    EXPECT_EQ(found, kind) << outline << family;
  }
}

}  // namespace
}  // namespace quillmark
