#include "resources/quillmark_resource_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "builders/apple_double_builder.h"
#include "resources/opened_file.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ResourceForkBuilder Bitmaps(const std::vector<std::int16_t>& ids, std::uint8_t attributes = 0) {
  ResourceForkBuilder fork;
  for (const std::int16_t id : ids) fork.Add(kNfnt, id, "bitmap", std::nullopt, attributes);
  return fork;
}

TEST(QuillmarkResourceFile, TakesTheResourceForkThenTheDataFork) {
  const OpenedFile dfont(Bitmaps({1}));
  ASSERT_NE(dfont.get(), nullptr);
  EXPECT_TRUE(dfont->isDataFork());
  EXPECT_EQ(dfont->file(), dfont.path());

  const auto sidecar = [&](std::string fork) {
    dfont.folder().Write("._Suitcase", AppleDoubleBuilder().ResourceFork(std::move(fork)).Build());
    return ResourceFileHolder(QuillmarkResourceFile::initWithFile(dfont.path(), true));
  };
  const auto with_fork = sidecar(Bitmaps({1, 2, 3}).Build());
  EXPECT_FALSE(with_fork.get()->isDataFork());
  EXPECT_EQ(with_fork.get()->countResType(kNfnt), 3);
  const auto with_bad_fork = sidecar("no map at all");
  EXPECT_TRUE(with_bad_fork.get()->isDataFork());
  EXPECT_EQ(with_bad_fork.get()->countResType(kNfnt), 1);
}

TEST(QuillmarkResourceFile, WithoutAMapThereIsNoObject) {
  const TempFolder folder;
  const std::string text = folder.Write("text", "no resource map in here, only words");
  for (const std::string& path : {text, folder.path(), folder.Path("missing"), std::string()}) {
    EXPECT_EQ(QuillmarkResourceFile::initWithFile(path, true), nullptr) << path;
  }
}

TEST(QuillmarkResourceFile, CountsAndReadsItsOwnMapOnly) {
  const OpenedFile one(
      ResourceForkBuilder().Add(kSfnt, 7, "seven").Add(kNfnt, -3, "minus").Add(kNfnt, 9, "nine"));
  const OpenedFile other(Bitmaps({50}));  // current file from here on
  EXPECT_EQ(one->count1ResTypes(), 2);
  EXPECT_EQ(one->countResType(kNfnt), 2);
  EXPECT_EQ(other->countResType(kNfnt), 1);
  EXPECT_EQ(one->countResType(kFond), 0);

  const ResourceHandle by_id(one->getResourceHandleForType(kNfnt, -3));
  EXPECT_EQ(AsText(HandleBytes(by_id.get())), "minus");
  const ResourceHandle by_index(one->getResourceHandleViaGet1IndResource(kNfnt, 2));
  EXPECT_EQ(AsText(HandleBytes(by_index.get())), "nine");
  EXPECT_EQ(one->getResourceHandleForType(kNfnt, 50), nullptr);
  EXPECT_EQ(one->getResourceHandleViaGet1IndResource(kNfnt, 3), nullptr);
  EXPECT_EQ(one->getResourceHandleViaGet1IndResource(kNfnt, 0), nullptr);

  const OpenedFile twice(Bitmaps({300, -5, 12, 300, 0}));
  EXPECT_THAT(twice->getSortedResIDsForType(kNfnt), ElementsAre(-5, 0, 12, 300));
  EXPECT_THAT(twice->getSortedResIDsForType(kSfnt), IsEmpty());

  ResType type = 1;
  one->getResourceTypeViaGet1IndType(&type, 2);
  EXPECT_EQ(type, kNfnt);
  one->getResourceTypeViaGet1IndType(&type, 3);
  EXPECT_EQ(type, 0u);
  one->getResourceTypeViaGet1IndType(nullptr, 1);
}

TEST(QuillmarkResourceFile, RemovesOneResourceAndWritesItAtTheEnd) {
  OpenedFile file(Bitmaps({1, 2, 3}), false);
  EXPECT_TRUE(file->purgeResource(kNfnt, 2));
  EXPECT_FALSE(file->purgeResource(kNfnt, 2));
  EXPECT_FALSE(file->purgeResource(kSfnt, 1));
  file.Reopen();
  EXPECT_THAT(file->getSortedResIDsForType(kNfnt), ElementsAre(1, 3));
}

TEST(QuillmarkResourceFile, RemovesAllButASetAndLoadsDataAgainAfterwards) {
  struct Row {
    const char* what;
    std::vector<std::int16_t> ids;
    std::set<std::int16_t> keep;
    bool removes;
    int left;
  };
  const Row rows[] = {
      {"one of three", {128, 129, 130}, {128}, true, 1},
      {"every one", {128, 129, 130}, {128, 129, 130, 131}, false, 3},
      {"none", {128, 129, 130}, {}, true, 0},
      {"an ID used twice is kept once", {128, 129, 128, 128}, {128, 129}, true, 2},
  };
  for (const Row& row : rows) {
    OpenedFile file(Bitmaps(row.ids), false);
    EXPECT_EQ(file->purgeAllBut(row.keep, kNfnt), row.removes) << row.what;
    EXPECT_EQ(HandleBytes(ResourceHandle(file->getResourceHandleForType(kNfnt, 128)).get()).size(),
              row.keep.contains(128) ? 6u : 0u)
        << row.what;
    file.Reopen();
    EXPECT_EQ(file->countResType(kNfnt), row.left) << row.what;
  }
}

TEST(QuillmarkResourceFile, ProtectedResourcesStayThoughRemovalIsReported) {
  OpenedFile file(Bitmaps({1, 2, 3}, ResourceForkBuilder::kProtected), false);
  EXPECT_TRUE(file->purgeResource(kNfnt, 2));
  EXPECT_TRUE(file->purgeAllBut({}, kNfnt));
  const auto kept = [&] { return ResourceHandle(file->getResourceHandleForType(kNfnt, 2)); };
  EXPECT_EQ(AsText(HandleBytes(kept().get())), "bitmap");
  file.Reopen();
  EXPECT_EQ(file->countResType(kNfnt), 3);
}

TEST(QuillmarkResourceFile, ActivationAnswersAnError) {
  const OpenedFile file(Bitmaps({1}));
  EXPECT_EQ(file->activate(), kATSInvalidFontContainerAccess);
  EXPECT_EQ(file->deactivate(), noErr);
  EXPECT_EQ(file->getPrinterNameFromFontActivation("Times-Roman"), std::nullopt);
  std::filesystem::remove(file.path());
  EXPECT_EQ(file->activate(), fnfErr);
}

}  // namespace
}  // namespace quillmark
