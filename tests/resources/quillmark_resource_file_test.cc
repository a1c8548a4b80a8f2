#include "resources/quillmark_resource_file.h"

#include <filesystem>

#include "builders/apple_double_builder.h"
#include "resources/opened_suitcase.h"

namespace quillmark {
namespace {

ResourceForkBuilder Bitmaps(const std::vector<std::int16_t>& ids) {
  ResourceForkBuilder fork;
  for (const std::int16_t id : ids) fork.Add(kNfnt, id, "bitmap");
  return fork;
}

TEST(QuillmarkResourceFile, TakesTheResourceForkThenTheDataFork) {
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
  for (const std::string& path :
       {text, dfont.folder().path(), dfont.folder().Path("missing"), std::string()}) {
    EXPECT_EQ(QuillmarkResourceFile::initWithFile(path, true), nullptr) << path;
  }
}

TEST(QuillmarkResourceFile, CountsAndReadsItsOwnMapOnly) {
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

TEST(QuillmarkResourceFile, RemovesResourcesAndWritesThatAtTheEnd) {
  const std::pair<std::set<std::int16_t>, std::vector<std::int16_t>> rows[] = {
      {{2}, {2}}, {{1, 2, 3, 4}, {1, 2, 3}}, {{}, {}}};
  for (const auto& [keep, left] : rows) {
    OpenedSuitcase file(Bitmaps({1, 2, 3, 2}), false);  // the second 2 goes in any case
    EXPECT_TRUE(file->purgeAllBut(keep, kNfnt));
    EXPECT_FALSE(file->purgeAllBut(keep, kNfnt));
    const std::size_t size = HandleBytes(file->getResourceHandleForType(kNfnt, 2)).size();
    EXPECT_EQ(size, keep.contains(2) ? 6u : 0u);  // data are loaded again afterwards
    file.Reopen(false);
    EXPECT_EQ(file->getSortedResIDsForType(kNfnt), left);
    EXPECT_EQ(file->countResType(kNfnt), static_cast<int>(left.size()));
    EXPECT_EQ(file->purgeResource(kNfnt, 2), keep.contains(2));
    file.Reopen();
    EXPECT_EQ(file->getResourceHandleForType(kNfnt, 2), nullptr);
  }
}

TEST(QuillmarkResourceFile, WhatMayNotBeWrittenStaysThoughRemovalIsReported) {
  // Attributes of the resource and of the map, and whether the file is open for reading only.
  const std::tuple<std::uint8_t, std::uint16_t, bool> rows[] = {
      {ResourceForkBuilder::kProtected, 0, false}, {0, 0x80, false}, {0, 0, true}};
  for (const auto& [attributes, map_attributes, read_only] : rows) {
    ResourceForkBuilder fork;
    fork.Add(kNfnt, 1, "bitmap", std::nullopt, attributes).MapAttributes(map_attributes);
    OpenedSuitcase file(fork, read_only);
    EXPECT_TRUE(file->purgeResource(kNfnt, 1));
    EXPECT_EQ(file->purgeAllBut({}, kNfnt), attributes != 0);
    file.Reopen();
    EXPECT_EQ(AsText(HandleBytes(file->getResourceHandleForType(kNfnt, 1))), "bitmap");
  }
}

TEST(QuillmarkResourceFile, ActivationAnswersAnError) {
  const OpenedSuitcase file(Bitmaps({1}));
  EXPECT_EQ(file->activate(), kATSInvalidFontContainerAccess);
  EXPECT_EQ(file->deactivate(), noErr);
  std::filesystem::remove(file.path());
  EXPECT_EQ(file->activate(), fnfErr);
}

}  // namespace
}  // namespace quillmark
