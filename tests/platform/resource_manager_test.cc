#include "platform/resource_manager/resource_manager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <utility>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/resource_manager/resource_files.h"

namespace quillmark {
namespace {

constexpr ResType kFond = FourCharCode("FOND");
constexpr ResType kNfnt = FourCharCode("NFNT");

ResFileRefNum OpenData(const std::string& path, SInt8 permission = fsRdPerm) {
  FSRef ref;
  EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr), noErr);
  ResFileRefNum number = 0;
  const OSErr error = FSOpenResourceFile(&ref, 0, nullptr, permission, &number);
  EXPECT_EQ(error, ResError());
  return number;
}

std::string Text(Handle handle) { return std::string(AsText(HandleBytes(handle))); }

std::string Suitcase() {
  return ResourceForkBuilder()
      .Add(kFond, 128, "fond", "Times")
      .Add(kNfnt, 129, "")
      .Add(kNfnt, 130, "locked", std::nullopt, ResourceForkBuilder::kProtected)
      .Build();
}

class ResourceManagerTest : public testing::Test {
 protected:
  void SetUp() override {
    path_ = folder_.Write("suitcase", Suitcase());
    file_ = OpenData(path_, fsRdWrPerm);
    ASSERT_GT(file_, 0);
  }
  void TearDown() override {
    CloseResFile(file_);
    EXPECT_EQ(ThreadResourceFiles().current, 0);
  }
  TempFolder folder_;
  std::string path_;
  ResFileRefNum file_ = -1;
};

TEST_F(ResourceManagerTest, GetGivesOneHandleUntilItIsReleased) {
  SetResLoad(false);
  const Handle locked = Get1Resource(kNfnt, 130);
  EXPECT_EQ(*locked, nullptr);
  SetResLoad(true);
  EXPECT_EQ(Get1Resource(kNfnt, 130), locked);
  EXPECT_EQ(Text(locked), "locked");
  const Handle fond = Get1IndResource(kFond, 1);
  EXPECT_EQ(Text(fond), "fond");
  EXPECT_EQ(Get1Resource(kFond, 128), fond);
  const Handle empty = Get1Resource(kNfnt, 129);
  ASSERT_NE(empty, nullptr);
  EXPECT_NE(*empty, nullptr);  // length 0 is loaded all the same
  ReleaseResource(fond);
  EXPECT_EQ(Text(Get1Resource(kFond, 128)), "fond");
}

TEST_F(ResourceManagerTest, DetachedAndOrdinaryHandlesLiveOn) {
  const Handle detached = Get1Resource(kFond, 128);
  DetachResource(detached);
  EXPECT_EQ(ResError(), noErr);
  EXPECT_NE(Get1Resource(kFond, 128), detached);
  DetachResource(detached);
  EXPECT_EQ(ResError(), resNotFound);
  ReleaseResource(detached);  // not a resource: stays
  EXPECT_EQ(ResError(), resNotFound);
  CloseResFile(file_);
  EXPECT_EQ(Text(detached), "fond");
  DisposeHandle(detached);
}

TEST_F(ResourceManagerTest, RemovalReachesTheFileWhenItIsClosed) {
  const Handle fond = Get1Resource(kFond, 128);
  RemoveResource(fond);
  EXPECT_EQ(ResError(), noErr);
  EXPECT_EQ(Text(fond), "fond");  // an ordinary handle now
  RemoveResource(fond);
  EXPECT_EQ(ResError(), rmvResFailed);
  DisposeHandle(fond);
  EXPECT_EQ(Count1Resources(kFond), 0);

  const Handle locked = Get1Resource(kNfnt, 130);
  RemoveResource(locked);
  EXPECT_EQ(ResError(), rmvResFailed);
  DisposeHandle(locked);  // the map must not hand it out again
  EXPECT_EQ(Text(Get1Resource(kNfnt, 130)), "locked");

  EXPECT_EQ(ReadFile(path_), Suitcase());
  CloseResFile(file_);
  EXPECT_EQ(ResError(), noErr);
  file_ = OpenData(path_);
  EXPECT_EQ(Count1Types(), 1);
}

TEST_F(ResourceManagerTest, ReadOnlyFilesAreNeverWritten) {
  const std::string locked_map = ResourceForkBuilder().Add(kFond, 1, "x").MapAttributes(0x80).Build();
  for (const auto& [bytes, permission] :
       {std::pair(Suitcase(), fsRdPerm), std::pair(locked_map, fsRdWrPerm)}) {
    const std::string path = folder_.Write("other", bytes);
    const ResFileRefNum other = OpenData(path, permission);
    const Handle fond = Get1IndResource(kFond, 1);
    RemoveResource(fond);
    DisposeHandle(fond);
    CloseResFile(other);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(ReadFile(path), bytes);
  }
}

TEST_F(ResourceManagerTest, ChainOfFiles) {
  const std::string list = BigEndianWriter().U16(2).Pascal("one").Pascal("two").Text("x").bytes();
  ResourceForkBuilder lists;
  lists.Add(FourCharCode("STR#"), 5, list).Add(kFond, 7, "lists");
  const ResFileRefNum second = OpenData(folder_.Write("lists", lists.Build()));
  EXPECT_EQ(ThreadResourceFiles().current, second);
  EXPECT_EQ(Get1Resource(kNfnt, 130), nullptr);
  EXPECT_EQ(Text(GetResource(kNfnt, 130)), "locked");  // of the file opened before
  const ResFileRefNum third = OpenData(folder_.Write("third", ResourceForkBuilder().Build()));
  Str255 text = {};
  GetIndString(text, 5, 2);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(text), 4), "\3two");
  GetIndString(text, 5, 3);
  EXPECT_EQ(text[0], 0);
  UseResFile(file_);
  EXPECT_EQ(GetResource(kFond, 7), nullptr);  // opened later
  UseResFile(third);
  CloseResFile(second);
  EXPECT_EQ(ThreadResourceFiles().current, third);
  CloseResFile(third);
  EXPECT_EQ(ThreadResourceFiles().current, file_);
}

TEST_F(ResourceManagerTest, StateIsOfTheThread) {
  SetResLoad(false);
  std::thread([this] {
    EXPECT_EQ(ThreadResourceFiles().current, 0);
    UseResFile(file_);
    EXPECT_EQ(ResError(), resFNotFound);
    const ResFileRefNum own = OpenData(path_);
    EXPECT_EQ(Text(Get1Resource(kFond, 128)), "fond");
    CloseResFile(own);
  }).join();
  EXPECT_EQ(*Get1Resource(kFond, 128), nullptr);
  SetResLoad(true);
  EXPECT_EQ(ThreadResourceFiles().current, file_);
}

TEST(ResourceFilesTest, WhatCannotBeOpened) {
  const TempFolder folder;
  FSRef ref;
  Boolean is_folder = 2;
  const auto make = [&](const std::string& path) {
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, &is_folder);
  };
  EXPECT_EQ(make(folder.Write("bad\xFF", "x")), fnfErr);
  EXPECT_EQ(make(folder.path()), noErr);
  EXPECT_EQ(is_folder, 1);

  const std::string font = folder.Write("font", "data");
  ASSERT_EQ(make(font), noErr);
  EXPECT_EQ(FSOpenResFile(&ref, fsRdPerm), -1);
  EXPECT_EQ(ResError(), resFNotFound);
  EXPECT_EQ(OpenData(font), -1);
  EXPECT_EQ(ResError(), mapReadErr);
}

TEST(ResourceFilesTest, CountsAreSigned) {
  ResourceForkBuilder builder;
  builder.Add(kFond, 1, "");
  std::string fork = builder.Build();
  const std::size_t type_list = fork.size() - 12 - 8 - 2;
  fork.resize(fork.size() + std::size_t{40000} * 12);
  BigEndianWriter map_length;
  fork.replace(12, 4, map_length.U32(static_cast<std::uint32_t>(50 + 40000 * 12)).bytes());
  fork.replace(type_list + 6, 2, BigEndianWriter().U16(39999).bytes());
  const TempFolder folder;
  const ResFileRefNum file = OpenData(folder.Write("font", fork));
  EXPECT_EQ(Count1Resources(kFond), -25536) << "callers that count up to it walk none";
  CloseResFile(file);
}

TEST(ResourceFilesTest, LostDataGiveNoHandle) {
  const TempFolder folder;
  ResourceForkBuilder builder;
  const std::string long_data(70'000, 's');  // more than is read of a file at once
  builder.Add(kFond, 1, "first").Add(kFond, 1, long_data).Add(kFond, 3, "cut off");
  builder.SetU32(ResourceForkBuilder::ReferenceOffset(builder.Build(), 0, 0) + 4, 0x00FFFFFF);
  const std::string path = folder.Write("font", builder.Build());
  const ResFileRefNum file = OpenData(path);
  EXPECT_EQ(Count1Resources(kFond), 3);
  for (const bool load : {true, false}) {
    SetResLoad(load);
    EXPECT_EQ(Get1IndResource(kFond, 1), nullptr);
    EXPECT_NE(ResError(), noErr);
    EXPECT_EQ(Get1Resource(kFond, 1), nullptr);
    EXPECT_NE(Get1IndResource(kFond, 2), nullptr);
  }
  SetResLoad(false);
  const Handle third = Get1IndResource(kFond, 3);
  std::filesystem::resize_file(path, 256 + 4 + 5 + 4 + long_data.size() + 4);
  SetResLoad(true);
  EXPECT_EQ(Get1IndResource(kFond, 3), nullptr) << "its data cannot be read";
  EXPECT_EQ(ResError(), ioErr);
  EXPECT_EQ(*third, nullptr) << "but the handle given out before stays";
  CloseResFile(file);
}

}  // namespace
}  // namespace quillmark
