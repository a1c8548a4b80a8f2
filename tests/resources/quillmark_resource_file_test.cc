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
  for (const std::string& path :
       {text, dfont.folder().path(), dfont.folder().Path("missing"), std::string()}) {
    EXPECT_EQ(QuillmarkResourceFile::initWithFile(path, true), nullptr) << path;
  }
}

TEST(QuillmarkResourceFile, CountsAndReadsItsOwnMapOnly) {
  const OpenedFile one(ResourceForkBuilder().Add(kSfnt, 7, "seven").Add(kNfnt, -3, "minus"));
  const OpenedFile other(Bitmaps({300, -5, 12, 300, 0}));  // current file from here on
  EXPECT_EQ(one->count1ResTypes(), 2);
  EXPECT_EQ(one->countResType(kNfnt), 1);
  EXPECT_EQ(other->countResType(kNfnt), 5);
  EXPECT_EQ(AsText(HandleBytes(ResourceHandle(one->getResourceHandleForType(kNfnt, -3)).get())), "minus");
  EXPECT_EQ(AsText(HandleBytes(ResourceHandle(one->getResourceHandleViaGet1IndResource(kSfnt, 1)).get())),
            "seven");
  EXPECT_EQ(one->getResourceHandleForType(kNfnt, 300), nullptr);
  EXPECT_EQ(one->getResourceHandleViaGet1IndResource(kNfnt, 2), nullptr);
  EXPECT_EQ(one->getResourceHandleViaGet1IndResource(kNfnt, 0), nullptr);
  EXPECT_THAT(other->getSortedResIDsForType(kNfnt), ElementsAre(-5, 0, 12, 300));
  EXPECT_THAT(other->getSortedResIDsForType(kSfnt), IsEmpty());
  ResType type = 1;
  one->getResourceTypeViaGet1IndType(&type, 2);
  EXPECT_EQ(type, kNfnt);
  one->getResourceTypeViaGet1IndType(&type, 3);
  EXPECT_EQ(type, 0u);
  one->getResourceTypeViaGet1IndType(nullptr, 1);
}

TEST(QuillmarkResourceFile, RemovesResourcesAndWritesThatAtTheEnd) {
  OpenedFile single(Bitmaps({1, 2, 3}), false);
  EXPECT_TRUE(single->purgeResource(kNfnt, 2));
  EXPECT_FALSE(single->purgeResource(kNfnt, 2));
  single.Reopen();
  EXPECT_THAT(single->getSortedResIDsForType(kNfnt), ElementsAre(1, 3));
  const struct {
    std::vector<std::int16_t> ids;
    std::set<std::int16_t> keep;
    bool removes;
    int left;
  } rows[] = {{{128, 129, 130}, {128}, true, 1},
              {{128, 129, 130}, {128, 129, 130, 131}, false, 3},
              {{128, 129, 130}, {}, true, 0},
              {{128, 129, 128, 128}, {128, 129}, true, 2}};  // an ID used twice is kept once
  for (const auto& row : rows) {
    OpenedFile file(Bitmaps(row.ids), false);
    EXPECT_EQ(file->purgeAllBut(row.keep, kNfnt), row.removes) << row.left;
    // Data are loaded again afterwards.
    EXPECT_EQ(HandleBytes(ResourceHandle(file->getResourceHandleForType(kNfnt, 128)).get()).size(),
              row.keep.contains(128) ? 6u : 0u);
    file.Reopen();
    EXPECT_EQ(file->countResType(kNfnt), row.left);
  }
}

TEST(QuillmarkResourceFile, ProtectedResourcesStayThoughRemovalIsReported) {
  OpenedFile file(Bitmaps({1, 2, 3}, ResourceForkBuilder::kProtected), false);
  EXPECT_TRUE(file->purgeResource(kNfnt, 2));
  EXPECT_TRUE(file->purgeAllBut({}, kNfnt));
  EXPECT_EQ(AsText(HandleBytes(ResourceHandle(file->getResourceHandleForType(kNfnt, 2)).get())), "bitmap");
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
