#include "platform/resource_manager/resource_manager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/resource_manager/resource_files.h"

namespace quillmark {
namespace {

constexpr ResType kFond = FourCharCode("FOND");
constexpr ResType kNfnt = FourCharCode("NFNT");

ResFileRefNum OpenData(const std::string& path, SInt8 permission = fsRdPerm) {
  FSRef ref;
  EXPECT_EQ(FSPathMakeRef(AsBytes(path.c_str()).data(), &ref, nullptr), noErr);
  ResFileRefNum number = 0;
  const OSErr error = FSOpenResourceFile(&ref, 0, nullptr, permission, &number);
  EXPECT_EQ(error, ResError());
  return number;
}

std::string Text(Handle handle) { return std::string(AsText(HandleBytes(handle))); }

class ResourceManagerTest : public testing::Test {
 protected:
  void SetUp() override {
    ResourceForkBuilder fork;
    fork.Add(kFond, 128, "fond").Add(kNfnt, 129, "").Add(kNfnt, 130, "bitmap");
    file_ = OpenData(folder_.Write("suitcase", fork.Build()), fsRdWrPerm);
  }
  void TearDown() override {
    CloseResFile(file_);
    EXPECT_EQ(ThreadResourceFiles().current, 0);
  }
  const TempFolder folder_;
  ResFileRefNum file_ = -1;
};

TEST_F(ResourceManagerTest, GetGivesOneHandleUntilItIsReleased) {
  SetResLoad(false);
  const Handle bitmap = Get1Resource(kNfnt, 130);
  EXPECT_EQ(*bitmap, nullptr);
  SetResLoad(true);
  EXPECT_EQ(Get1Resource(kNfnt, 130), bitmap);
  EXPECT_EQ(Text(bitmap), "bitmap");
  const Handle fond = Get1IndResource(kFond, 1);
  EXPECT_EQ(Get1Resource(kFond, 128), fond);
  EXPECT_NE(*Get1Resource(kNfnt, 129), nullptr) << "length 0 is loaded all the same";
  ReleaseResource(fond);
  EXPECT_EQ(Text(Get1Resource(kFond, 128)), "fond");
}

TEST_F(ResourceManagerTest, HandlesLeaveTheirFile) {
  const Handle detached = Get1Resource(kFond, 128);
  DetachResource(detached);
  EXPECT_EQ(ResError(), noErr);
  const Handle removed = Get1Resource(kFond, 128);
  EXPECT_NE(removed, detached);
  RemoveResource(removed);
  EXPECT_EQ(Count1Resources(kFond), 0);
  RemoveResource(removed);
  EXPECT_EQ(ResError(), rmvResFailed);
  ReleaseResource(detached);  // not a resource: stays
  EXPECT_EQ(ResError(), resNotFound);
  DisposeHandle(Get1Resource(kNfnt, 130));  // the map must not hand it out again
  EXPECT_EQ(Text(Get1Resource(kNfnt, 130)), "bitmap");
  CloseResFile(file_);
  EXPECT_EQ(ResError(), noErr);
  for (const Handle handle : {detached, removed}) {
    EXPECT_EQ(Text(handle), "fond");
    DisposeHandle(handle);
  }
}

TEST_F(ResourceManagerTest, FilesAreSearchedFromTheCurrentOneToThoseOpenedBefore) {
  const std::string lists = ResourceForkBuilder().Add(kFond, 7, "second").Build();
  const ResFileRefNum second = OpenData(folder_.Write("second", lists));
  EXPECT_EQ(Get1Resource(kNfnt, 130), nullptr);
  EXPECT_EQ(Text(GetResource(kNfnt, 130)), "bitmap");
  const ResFileRefNum third = OpenData(folder_.Write("third", ResourceForkBuilder().Build()));
  EXPECT_EQ(Text(GetResource(kFond, 7)), "second");
  UseResFile(file_);
  EXPECT_EQ(GetResource(kFond, 7), nullptr);
  UseResFile(third);
  CloseResFile(second);
  EXPECT_EQ(ThreadResourceFiles().current, third);
  CloseResFile(third);
  EXPECT_EQ(ThreadResourceFiles().current, file_);
}

TEST_F(ResourceManagerTest, TellsWhyAFileCannotBeOpened) {
  FSRef ref;
  Boolean is_folder = 2;
  const auto make = [&](const std::string& path) {
    return FSPathMakeRef(AsBytes(path.c_str()).data(), &ref, &is_folder);
  };
  EXPECT_EQ(make(folder_.Write("bad\xFF", "x")), fnfErr);
  EXPECT_EQ(make(folder_.path()), noErr);
  EXPECT_EQ(is_folder, 1);
  const std::string font = folder_.Write("font", "data");
  ASSERT_EQ(make(font), noErr);
  EXPECT_EQ(FSOpenResFile(&ref, fsRdPerm), -1);
  EXPECT_EQ(ResError(), resFNotFound);
  EXPECT_EQ(OpenData(font), -1);
  EXPECT_EQ(ResError(), mapReadErr);
}

TEST_F(ResourceManagerTest, CountsAreSigned) {
  constexpr std::uint32_t kCount = 40000;
  BigEndianWriter fork;  // the map directly behind the header, with one type
  fork.U32(16).U32(16).U32(0).U32(38 + 12 * kCount).Zeros(24).U16(28).U16(0);
  fork.U16(0).U32(kFond).U16(kCount - 1).U16(10).Zeros(12 * kCount);
  const ResFileRefNum file = OpenData(folder_.Write("font", fork.bytes()));
  EXPECT_EQ(Count1Resources(kFond), -25536) << "callers that count up to it walk none";
  CloseResFile(file);
}

TEST_F(ResourceManagerTest, LostDataGiveNoHandle) {
  ResourceForkBuilder builder;
  const std::string long_data(70'000, 's');  // more than is read of a file at once
  builder.Add(kFond, 1, "first").Add(kFond, 1, long_data).Add(kFond, 3, "cut off");
  builder.SetU32(ResourceForkBuilder::ReferenceOffset(builder.Build(), 0, 0) + 4, 0x00FFFFFF);
  const std::string path = folder_.Write("font", builder.Build());
  const ResFileRefNum file = OpenData(path);
  for (const bool load : {true, false}) {
    SetResLoad(load);
    EXPECT_EQ(Get1Resource(kFond, 1), nullptr);
    EXPECT_EQ(ResError(), mapReadErr);
    EXPECT_NE(Get1IndResource(kFond, 2), nullptr);
  }
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
