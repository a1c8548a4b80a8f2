#include "platform/resource_manager.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/resource_files.h"

namespace quillmark {
namespace {

constexpr ResType kFond = FourCharCode("FOND");
constexpr ResType kNfnt = FourCharCode("NFNT");

FSRef Ref(const std::string& path) {
  FSRef ref;
  EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr), noErr);
  return ref;
}

ResFileRefNum OpenData(const std::string& path, SInt8 permission = fsRdPerm) {
  const FSRef ref = Ref(path);
  ResFileRefNum number = 0;
  const OSErr error = FSOpenResourceFile(&ref, 0, nullptr, permission, &number);
  EXPECT_EQ(error, ResError());
  return number;
}

ResFileRefNum CurrentFile() { return ThreadResourceFiles().current; }

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
    EXPECT_EQ(CurrentFile(), 0);
  }
  TempFolder folder_;
  std::string path_;
  ResFileRefNum file_ = -1;
};

TEST_F(ResourceManagerTest, CountsAndIndexes) {
  EXPECT_EQ(Count1Types(), 2);
  EXPECT_EQ(Count1Resources(kNfnt), 2);
  EXPECT_EQ(Count1Resources(FourCharCode("POST")), 0);
  EXPECT_EQ(ResError(), noErr);
  ResType type = 1;
  Get1IndType(&type, 2);
  EXPECT_EQ(type, kNfnt);
  for (const std::int16_t index : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{3}}) {
    Get1IndType(&type, index);
    EXPECT_EQ(ResError(), resNotFound) << index;
    EXPECT_EQ(Get1IndResource(kNfnt, index), nullptr) << index;
    EXPECT_EQ(ResError(), resNotFound) << index;
  }
  EXPECT_EQ(Get1Resource(kNfnt, 131), nullptr);
  EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(ResourceManagerTest, GetGivesOneHandleUntilItIsReleased) {
  const Handle fond = Get1IndResource(kFond, 1);
  EXPECT_EQ(Text(fond), "fond");
  EXPECT_EQ(GetHandleSize(fond), 4);
  EXPECT_EQ(Get1Resource(kFond, 128), fond);
  ResID id = 0;
  ResType type = 0;
  Str255 name = {};
  GetResInfo(fond, &id, &type, name);
  EXPECT_EQ(id, 128);
  EXPECT_EQ(type, kFond);
  EXPECT_EQ(std::memcmp(name, "\5Times", 6), 0);
  const Handle empty = Get1Resource(kNfnt, 129);
  ASSERT_NE(empty, nullptr);
  EXPECT_NE(*empty, nullptr);  // length 0 is loaded all the same
  EXPECT_EQ(GetHandleSize(empty), 0);
  GetResInfo(empty, nullptr, nullptr, name);
  EXPECT_EQ(name[0], 0);
  ReleaseResource(fond);
  EXPECT_EQ(ResError(), noErr);
  EXPECT_EQ(Text(Get1Resource(kFond, 128)), "fond");
  ReleaseResource(nullptr);
  EXPECT_EQ(ResError(), resNotFound);
  GetResInfo(nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(ResourceManagerTest, LoadSwitch) {
  SetResLoad(false);
  const Handle fond = Get1Resource(kFond, 128);
  ASSERT_NE(fond, nullptr);
  EXPECT_EQ(*fond, nullptr);
  EXPECT_EQ(GetHandleSize(fond), 0);
  EXPECT_TRUE(HandleBytes(fond).empty());
  const Handle locked = Get1Resource(kNfnt, 130);
  LoadResource(fond);
  EXPECT_EQ(Text(fond), "fond");
  SetResLoad(true);
  EXPECT_EQ(*locked, nullptr);
  EXPECT_EQ(Get1Resource(kNfnt, 130), locked);
  EXPECT_EQ(Text(locked), "locked");
}

TEST_F(ResourceManagerTest, DetachedAndOrdinaryHandlesLiveOn) {
  const Handle detached = Get1Resource(kFond, 128);
  DetachResource(detached);
  EXPECT_EQ(ResError(), noErr);
  const Handle again = Get1Resource(kFond, 128);
  EXPECT_NE(again, detached);
  DetachResource(detached);
  EXPECT_EQ(ResError(), resNotFound);
  ReleaseResource(detached);  // not a resource: stays
  EXPECT_EQ(ResError(), resNotFound);
  CloseResFile(file_);
  EXPECT_EQ(Text(detached), "fond");
  DisposeHandle(detached);
  DisposeHandle(nullptr);
  EXPECT_EQ(GetHandleSize(nullptr), 0);
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
  EXPECT_EQ(Count1Resources(kNfnt), 2);
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
    EXPECT_EQ(Count1Resources(kFond), 0);
    CloseResFile(other);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(ReadFile(path), bytes);
  }
}

TEST_F(ResourceManagerTest, FailedWriteIsReportedAtClosing) {
  const std::string path = folder_.Write("sub/gone", Suitcase());
  const ResFileRefNum other = OpenData(path, fsRdWrPerm);
  const Handle fond = Get1Resource(kFond, 128);
  RemoveResource(fond);
  DisposeHandle(fond);
  std::filesystem::remove_all(folder_.Path("sub"));
  CloseResFile(other);
  EXPECT_EQ(ResError(), ioErr);
  EXPECT_EQ(CurrentFile(), file_);  // closed all the same
}

TEST_F(ResourceManagerTest, ChainOfFiles) {
  const std::string list = BigEndianWriter().U16(2).Pascal("one").Pascal("two").Text("x").bytes();
  ResourceForkBuilder lists;
  lists.Add(FourCharCode("STR#"), 5, list).Add(kFond, 7, "lists");
  const ResFileRefNum second = OpenData(folder_.Write("lists", lists.Build()));
  EXPECT_EQ(CurrentFile(), second);
  EXPECT_EQ(Get1Resource(kNfnt, 130), nullptr);
  EXPECT_EQ(Text(GetResource(kNfnt, 130)), "locked");  // of the file opened before
  const ResFileRefNum third = OpenData(folder_.Write("third", ResourceForkBuilder().Build()));
  Str255 text = {};
  GetIndString(text, 5, 2);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(text), 4), "\3two");
  for (const auto& [id, index] : {std::pair(5, 0), std::pair(5, 3), std::pair(6, 1)}) {
    GetIndString(text, static_cast<ResID>(id), static_cast<std::int16_t>(index));
    EXPECT_EQ(text[0], 0) << id << " " << index;
  }
  UseResFile(file_);
  EXPECT_EQ(GetResource(kFond, 7), nullptr);  // opened later
  UseResFile(999);
  EXPECT_EQ(ResError(), resFNotFound);
  EXPECT_EQ(CurrentFile(), file_);
  UseResFile(third);
  CloseResFile(second);
  EXPECT_EQ(CurrentFile(), third);
  CloseResFile(third);
  EXPECT_EQ(CurrentFile(), file_);
  CloseResFile(third);
  EXPECT_EQ(ResError(), resFNotFound);
}

TEST_F(ResourceManagerTest, StateIsOfTheThread) {
  SetResLoad(false);
  std::thread([this] {
    EXPECT_EQ(CurrentFile(), 0);
    UseResFile(file_);
    EXPECT_EQ(ResError(), resFNotFound);
    EXPECT_EQ(Count1Types(), 0);
    const ResFileRefNum own = OpenData(path_);
    EXPECT_EQ(Text(Get1Resource(kFond, 128)), "fond");
    CloseResFile(own);
  }).join();
  EXPECT_EQ(*Get1Resource(kFond, 128), nullptr);
  SetResLoad(true);
  EXPECT_EQ(CurrentFile(), file_);
}

TEST(ResourceFilesTest, WhatCannotBeOpened) {
  const TempFolder folder;
  FSRef ref;
  Boolean is_folder = 2;
  const auto make = [&](const std::string& path) {
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, &is_folder);
  };
  EXPECT_EQ(make(folder.Path("missing")), fnfErr);
  EXPECT_EQ(make(folder.Write("bad\xFF", "x")), fnfErr);
  EXPECT_EQ(make(folder.path()), noErr);
  EXPECT_EQ(is_folder, 1);

  const std::string font = folder.Write("font", "data");
  ASSERT_EQ(make(font), noErr);
  EXPECT_EQ(is_folder, 0);
  EXPECT_EQ(FSOpenResFile(&ref, fsRdPerm), -1);
  EXPECT_EQ(ResError(), resFNotFound);
  EXPECT_EQ(OpenData(font), -1);
  EXPECT_EQ(ResError(), mapReadErr);
  folder.Write("resource.frk/font", "not a map, though longer than 16 bytes");
  EXPECT_EQ(FSOpenResFile(&ref, fsRdPerm), -1);
  EXPECT_EQ(ResError(), mapReadErr);
  folder.Write("resource.frk/font", Suitcase());
  const ResFileRefNum file = FSOpenResFile(&ref, fsRdWrPerm);
  EXPECT_GT(file, 0);
  RemoveResource(Get1Resource(kNfnt, 130));  // protected
  CloseResFile(file);
  EXPECT_EQ(ReadFile(folder.Path("resource.frk/font")), Suitcase());
  EXPECT_EQ(CurrentFile(), 0);
  EXPECT_EQ(Get1Resource(kFond, 128), nullptr);
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
  builder.Add(kFond, 1, "first").Add(kFond, 1, "second").Add(kFond, 3, "cut off");
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
  std::filesystem::resize_file(path, 256 + 4 + 5 + 4 + 6 + 4);
  SetResLoad(true);
  EXPECT_EQ(Get1IndResource(kFond, 3), nullptr) << "its data cannot be read";
  EXPECT_EQ(ResError(), ioErr);
  EXPECT_EQ(*third, nullptr) << "but the handle given out before stays";
  CloseResFile(file);
}

}  // namespace
}  // namespace quillmark
