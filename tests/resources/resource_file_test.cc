// Resource files: opening, counting, reading, removing, and what their resources tell of them.
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "builders/apple_double_builder.h"
#include "platform/files/extended_attributes.h"
#include "platform/files/file_system.h"
#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

ResourceForkBuilder Bitmaps(const std::vector<std::int16_t>& ids) {
  ResourceForkBuilder fork;
  for (const std::int16_t id : ids) fork.Add(kNfnt, id, "bitmap");
  return fork;
}

TEST(ResourceFile, TakesTheResourceForkThenTheDataFork) {
  const OpenedSuitcase dfont(Bitmaps({1}));
  EXPECT_TRUE(dfont->isDataFork());
  EXPECT_EQ(dfont->file(), dfont.path());
  const auto sidecar = [&](std::string fork) {
    dfont.folder().Write("._Suitcase", AppleDoubleBuilder().ResourceFork(std::move(fork)).Build());
    const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(dfont.path(), true));
    return std::pair(file.get()->isDataFork(), file.get()->countResType(kNfnt));
  };
  EXPECT_EQ(sidecar(Bitmaps({1, 2, 3}).Build()), std::pair(false, 3));
  EXPECT_EQ(sidecar("no map at all"), std::pair(true, 1));
  const std::string text = dfont.folder().Write("text", "no resource map in here, only words");
  const std::string no_utf8 = dfont.folder().Write("bad\xFF", Bitmaps({1}).Build());
  for (const std::string& path :
       {text, no_utf8, dfont.folder().path(), dfont.folder().Path("missing"), std::string()}) {
    EXPECT_EQ(QuillmarkResourceFile::initWithFile(path, true), nullptr) << path;
  }
}

TEST(ResourceFile, CountsAndReadsItsOwnMapOnly) {
  const OpenedSuitcase one(ResourceForkBuilder().Add(kSfnt, 7, "seven").Add(kNfnt, -3, "minus"));
  const OpenedSuitcase other(Bitmaps({300, -5, 12, 300, 0}));  // current file from here on
  EXPECT_EQ(one->count1ResTypes(), 2);
  EXPECT_EQ(one->countResType(kNfnt), 1);
  EXPECT_EQ(other->countResType(kNfnt), 5);
  EXPECT_EQ(AsText(HandleBytes(one->getResourceHandleForType(kNfnt, -3))), "minus");
  EXPECT_EQ(AsText(HandleBytes(one->getResourceHandleViaGet1IndResource(kSfnt, 1))), "seven");
  EXPECT_EQ(one->getResourceHandleForType(kNfnt, 300), nullptr);
  EXPECT_EQ(one->getResourceHandleViaGet1IndResource(kNfnt, 2), nullptr);
  EXPECT_THAT(other->getSortedResIDsForType(kNfnt), ElementsAre(-5, 0, 12, 300));
  ResType type = 1;
  one->getResourceTypeViaGet1IndType(&type, 2);
  EXPECT_EQ(type, kNfnt);
  one->getResourceTypeViaGet1IndType(&type, 3);
  EXPECT_EQ(type, 0u);
}

TEST(ResourceFile, WritesRemovalsAtTheEndWhereverTheForkLies) {
  const auto fork = [](bool is_whole) {
    ResourceForkBuilder left;
    left.SetU32(20, FourCharCode("kept"));  // between header and data
    if (is_whole) left.Add(kNfnt, 1, "gone", "Gone");
    left.Add(kNfnt, 3, "bitmap", "Name");
    if (is_whole) left.Add(kNfnt, 3, "the second").Add(kPost, 501, "gone");
    left.Add(kNfnt, 4, "last", std::nullopt, ResourceForkBuilder::kProtected);
    return left.Add(kFond, 5, "bitmap").ShareEqualData();
  };
  const auto in_sidecar = [](const std::string& bytes) {
    return AppleDoubleBuilder().Entry(3, "name").ResourceFork(bytes).FinderInfo("FFIL", "DMOV").Build();
  };
  const TempFolder folder;
  const std::string font = folder.Write("font", "");
  for (const std::string name : {"resource.frk/font", "._font", "font"}) {
    const auto stored = [&](const std::string& bytes) {
      return name == "._font" ? in_sidecar(bytes) : bytes;
    };
    const std::string path = folder.Write(name, stored(fork(true).MapFirst().Build()));
    for (const bool read_only : {true, false}) {
      const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(font, read_only));
      EXPECT_TRUE(file.get()->purgeResource(kPost, 501));
      EXPECT_FALSE(file.get()->purgeResource(kPost, 501));
      EXPECT_TRUE(file.get()->purgeAllBut({3}, kNfnt));
      EXPECT_EQ(file.get()->count1ResTypes(), 2) << "a type goes with its last resource";
    }
    EXPECT_EQ(ReadFile(path), stored(fork(false).Build())) << name;
    if (name != "font") std::filesystem::remove(path);
  }
}

TEST(ResourceFile, KeepsModeAndAttributesWhenItIsWritten) {
  const TempFolder folder;
  const std::string font = folder.Write("font", Bitmaps({1, 2}).Build());
  const auto attribute = [&](const std::string& name) {
    return SystemFiles().Attribute(font, name).value_or("none");
  };
  const auto purge = [&](std::int16_t id) {
    const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(font, false));
    return file.get()->purgeResource(kNfnt, id);
  };
  if (!WriteExtendedAttribute(font, "user.note", "kept")) GTEST_SKIP() << "no attributes in this folder";
  std::filesystem::permissions(font, std::filesystem::perms(0640));
  EXPECT_TRUE(purge(1));
  EXPECT_EQ(ReadFile(font), Bitmaps({2}).Build());
  EXPECT_EQ(attribute("user.note"), "kept");
  EXPECT_EQ(std::filesystem::status(font).permissions(), std::filesystem::perms(0640));

  const std::string fork_name = "user.com.apple.ResourceFork";
  ASSERT_TRUE(WriteExtendedAttribute(font, fork_name, Bitmaps({3, 4}).Build()));
  EXPECT_TRUE(purge(3));
  EXPECT_EQ(attribute(fork_name), Bitmaps({4}).Build());
  EXPECT_EQ(ReadFile(font), Bitmaps({2}).Build());
}

TEST(ResourceFile, ThatCannotBeWrittenWholeStaysAsItWas) {
  const OpenedSuitcase file(Bitmaps({1, 2, 3}));
  const std::string before = ReadFile(file.path());
  std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
  const struct rlimit full = {300, limit.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
  const auto is_removed = [&] {
    const ResourceFileHolder opened(QuillmarkResourceFile::initWithFile(file.path(), false));
    return opened.get()->purgeResource(kNfnt, 1);
  }();
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_TRUE(is_removed);
  EXPECT_EQ(ReadFile(file.path()), before);
}

TEST(ResourceFile, AnswersForNoFile) {
  FreeResourceFile(nullptr);
  EXPECT_FALSE(is_psfont(nullptr) || is_psprinterfont(nullptr) || hasValidResourcePSHeader(nullptr));
  EXPECT_EQ(countResType(nullptr, kFond), 0);
  EXPECT_EQ(getHandleOfTypeAndResID(nullptr, kFond, 1), nullptr);
  EXPECT_EQ(getHandleOfTypeAndIndex(nullptr, kFond, 1), nullptr);
}

TEST(ResourceFile, IsToldByItsTypes) {
  const auto holds = [](const ResourceForkBuilder& fork) {
    const OpenedSuitcase file(fork);
    return std::vector<bool>{FileHasPOSTsInResourceFork(file.get()), is_psprinterfont(file.get()),
                             FileHasFONDsInResourceFork(file.get()), is_psfont(file.get())};
  };
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kPost, 501, "x")), ElementsAre(1, 1, 0, 0));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kPost, 502, "x")), ElementsAre(1, 0, 0, 0));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kFond, 1, "x").Add(kNfnt, 501, "x")), ElementsAre(0, 0, 1, 1));
  EXPECT_THAT(holds(ResourceForkBuilder().Add(kSfnt, 1, "x").AddEmptyType(kFond)), ElementsAre(0, 0, 0, 0));
}

TEST(ResourceFile, OutlinesAreToldByTheirFirstBytes) {
  const std::string version("\0\1\0\0", 4);
  const std::tuple<std::string, const char*, const char*> rows[] = {
      {"OTTO", "Family", "OTTO"}, {"OTT", "Family", ""},      {"typ1", "Family", "typ1"},
      {"typ", "Family", ""},      {version, "A-CID", "true"}, {version.substr(0, 3), "x", ""},
      {"true", "Family", "true"}, {"true", "A-CIDx", ""},     {"true", "xCID-B", ""},
      {"true", "CID-Bx", "true"}, {"true", "xA-CID", "true"}, {"ttcf", "Family", ""}};
  for (const auto& [outline, family, kind] : rows) {
    const OpenedSuitcase file(ResourceForkBuilder().Add(kSfnt, 40, outline));
    std::string found = has_OTTO_Flag_inResource(AsBytes(outline)) ? "OTTO" : "";
    if (has_ttc_true_Flag(AsBytes(outline), family)) found += "true";
    if (hasValidResourcePSHeader(file.get())) found += "typ1";
    EXPECT_EQ(found, kind) << outline << family;
  }
}

}  // namespace
}  // namespace quillmark
