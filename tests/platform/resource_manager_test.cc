// Maps as files hold them, and the calls that hand out their resources. Removal is in
// tests/resources/resource_file_test.cc.
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

std::optional<ResourceMap> Open(const std::string& fork) {
  return ResourceMap::Open(Fork(std::make_shared<const std::string>(fork)));
}

// What a map shows, at most 100 resources a type.
std::string Listing(ResourceMap& map) {
  std::string text;
  for (std::size_t t = 0; const auto type = map.TypeAt(t); ++t) {
    text += BigEndianWriter().U32(*type).bytes() + ":";
    for (std::size_t i = 0; i < 100; ++i) {
      const auto key = map.At(*type, i);
      if (!key) break;
      text += " " + std::to_string(map.ID(*key)) + "/" + map.Name(*key).value_or("-") + "/";
      const auto range = map.Data(*key);
      std::string data(range ? range->length : 0, '\0');
      if (range) map.fork().ReadAt(range->start, {reinterpret_cast<std::uint8_t*>(data.data()), data.size()});
      text += range ? data : "(none)";
      if (map.Attributes(*key) != 0) text += "/" + std::to_string(map.Attributes(*key));
      EXPECT_TRUE(map.Find(*type, map.ID(*key)));
    }
    text += "\n";
  }
  return text;
}

// FOND 1 and the first NFNT 129 have one copy of their data.
ResourceForkBuilder Suitcase() {
  ResourceForkBuilder builder;
  builder.Add(kFond, 128, "fond", "Times").Add(kNfnt, 129, "bitmap").Add(kNfnt, -5, "", "");
  builder.Add(kNfnt, 129, "second", std::nullopt, ResourceForkBuilder::kProtected);
  return builder.Add(kFond, 1, "bitmap", "Times").ShareEqualData();
}

TEST(ResourceMap, IsReadInAnyOrderAndWithOddEntries) {
  const std::string plain = Suitcase().Build();
  const std::size_t reference = ResourceForkBuilder::ReferenceOffset(plain, 1, 0);  // of the first NFNT
  ResourceForkBuilder lost_data = Suitcase();
  lost_data.SetU32(reference + 4, 0x00FFFFF0);
  ResourceForkBuilder lost_names = Suitcase();
  lost_names.SetU16(reference + 2, 0xFFFE);
  lost_names.SetU8(plain.size() - 7, 200);  // length of the second "Times", before an empty name
  ResourceForkBuilder small_map = Suitcase();
  small_map.SetU32(12, 29);
  const std::string listing = "FOND: 128/Times/fond 1/Times/bitmap\nNFNT: 129/-/bitmap -5// 129/-/second/8\n";
  const std::pair<std::string, std::string> rows[] = {
      {plain, listing},
      {Suitcase().OddOrder().MapFirst().Build(), listing},
      {ResourceForkBuilder().Build(), ""},
      // Of a type listed twice the first entry counts.
      {ResourceForkBuilder().Add(kFond, 1, "a").AddEmptyType(kFond).AddEmptyType(kNfnt).Build(),
       "FOND: 1/-/a\nNFNT:\n"},
      {lost_data.Build(), "FOND: 128/Times/fond 1/Times/bitmap\nNFNT: 129/-/(none) -5// 129/-/second/8\n"},
      {lost_names.Build(), "FOND: 128/Times/fond 1/-/bitmap\nNFNT: 129/-/bitmap -5// 129/-/second/8\n"},
      {small_map.Build(), "refused"}};
  for (const auto& [fork, expected] : rows) {
    auto map = Open(fork);
    EXPECT_EQ(map ? Listing(*map) : "refused", expected);
    for (std::size_t length = 0; length < fork.size(); ++length) EXPECT_FALSE(Open(fork.substr(0, length)));
  }
  auto map = Open(plain);
  EXPECT_EQ(map->Attributes(*map->Find(kNfnt, 129)), 0) << "the first of the ID";
}

TEST(ResourceMap, TypesThatShareOneLargeListCostNoMoreThanTheFileHolds) {
  constexpr std::size_t kTypes = 65535;
  BigEndianWriter types;
  types.U16(kTypes - 1);
  // All lists start at the type list, whose bytes serve as 43,690 references.
  for (std::uint32_t t = 0; t < kTypes; ++t) types.U32(t).U16(43000).U16(0);
  BigEndianWriter fork;
  const auto map_size = static_cast<std::uint32_t>(28 + types.size());
  fork.U32(16).U32(16).U32(0).U32(map_size).Zeros(24).U16(28).U16(0).Text(types.bytes());
  auto map = Open(fork.bytes());
  ASSERT_TRUE(map);
  EXPECT_EQ(map->CountResources(7), 43001u);
  // Looking up by turns must not index the lists anew each time.
  for (std::size_t i = 0; i < 43001; ++i) {
    for (const std::uint32_t type : {1u, 2u, 3u}) ASSERT_TRUE(map->Find(type, map->ID(*map->At(type, i))));
  }
  EXPECT_FALSE(map->Write([](Bytes) { return true; })) << "unshared, the lists outgrow their 16-bit offsets";
}

std::string Text(Handle handle) { return std::string(AsText(HandleBytes(handle))); }

class ResourceManager : public testing::Test {
 protected:
  void SetUp() override {
    const std::string list("\0\2\5plain\2\x8E!\1x", 13);
    ResourceForkBuilder fork;
    fork.Add(kFond, 128, "fond").Add(kNfnt, 129, "").Add(kNfnt, 130, "bitmap");
    file_ = Open(fork.Add(FourCharCode("STR#"), 200, list).Build());
  }
  void TearDown() override {
    CloseResFile(file_);
    EXPECT_EQ(ThreadResourceFiles().current, 0);
  }
  ResFileRefNum Open(const std::string& data_fork) const {
    FSRef ref;
    const std::string path = folder_.Write("font", data_fork);
    EXPECT_EQ(FSPathMakeRef(AsBytes(path.c_str()).data(), &ref, nullptr), noErr);
    ResFileRefNum number = 0;
    EXPECT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &number), noErr);
    return number;
  }
  const TempFolder folder_;
  ResFileRefNum file_ = -1;
};

TEST_F(ResourceManager, GetGivesOneHandleUntilItIsReleased) {
  const Handle fond = Get1IndResource(kFond, 1);
  EXPECT_EQ(Get1Resource(kFond, 128), fond);
  ReleaseResource(fond);
  SetResLoad(false);
  EXPECT_EQ(*Get1Resource(kFond, 128), nullptr) << "the data went with the handle";
  const Handle bitmap = Get1Resource(kNfnt, 130);
  EXPECT_EQ(*bitmap, nullptr);
  SetResLoad(true);
  EXPECT_EQ(Get1Resource(kNfnt, 130), bitmap);
  EXPECT_EQ(Text(bitmap), "bitmap");
  EXPECT_NE(*Get1Resource(kNfnt, 129), nullptr) << "length 0 is loaded all the same";
  const Handle detached = Get1Resource(kFond, 128);
  DetachResource(detached);
  ReleaseResource(detached);  // not a resource: stays
  EXPECT_EQ(ResError(), resNotFound);
  DisposeHandle(bitmap);  // the map must not hand it out again
  EXPECT_EQ(Text(Get1Resource(kNfnt, 130)), "bitmap");
  CloseResFile(file_);
  EXPECT_EQ(Text(detached), "fond");
  DisposeHandle(detached);
}

TEST_F(ResourceManager, FilesAreSearchedFromTheCurrentOneToThoseOpenedBefore) {
  const ResFileRefNum second = Open(ResourceForkBuilder().Add(kFond, 7, "second").Build());
  EXPECT_EQ(Get1Resource(kNfnt, 130), nullptr);
  EXPECT_EQ(Text(GetResource(kNfnt, 130)), "bitmap");
  const char* const entries[] = {"", "plain", "\x8E!", ""};  // the third lies behind the count
  for (std::int16_t i = 0; i < 4; ++i) {
    Str255 text;
    GetIndString(text, 200, i);
    EXPECT_EQ(AsText(Bytes(text).subspan(1, text[0])), entries[i]) << i;
  }
  UseResFile(file_);
  EXPECT_EQ(GetResource(kFond, 7), nullptr);
  UseResFile(second);
  CloseResFile(second);
  EXPECT_EQ(ThreadResourceFiles().current, file_);
}

TEST_F(ResourceManager, CountsAreSigned) {
  constexpr std::uint32_t kCount = 40000;
  BigEndianWriter fork;  // the map directly behind the header, with one type
  fork.U32(16).U32(16).U32(0).U32(38 + 12 * kCount).Zeros(24).U16(28).U16(0);
  fork.U16(0).U32(kFond).U16(kCount - 1).U16(10).Zeros(12 * kCount);
  const ResFileRefNum file = Open(fork.bytes());
  EXPECT_EQ(Count1Resources(kFond), -25536) << "callers that count up to it walk none";
  CloseResFile(file);
}

TEST_F(ResourceManager, LostDataGiveNoHandle) {
  ResourceForkBuilder builder;
  const std::string long_data(70'000, 's');  // more than is read of a file at once
  builder.Add(kFond, 1, "first").Add(kFond, 1, long_data).Add(kFond, 3, "cut off");
  builder.SetU32(ResourceForkBuilder::ReferenceOffset(builder.Build(), 0, 0) + 4, 0x00FFFFFF);
  const ResFileRefNum file = Open(builder.Build());
  for (const bool load : {true, false}) {
    SetResLoad(load);
    EXPECT_EQ(Get1Resource(kFond, 1), nullptr);
    EXPECT_EQ(ResError(), mapReadErr);
    EXPECT_NE(Get1IndResource(kFond, 2), nullptr);
  }
  const Handle third = Get1IndResource(kFond, 3);
  std::filesystem::resize_file(folder_.Path("font"), 256 + 4 + 5 + 4 + long_data.size() + 4);
  SetResLoad(true);
  EXPECT_EQ(Get1IndResource(kFond, 3), nullptr) << "its data cannot be read";
  EXPECT_EQ(ResError(), ioErr);
  EXPECT_EQ(*third, nullptr) << "but the handle given out before stays";
  CloseResFile(file);
}

}  // namespace
}  // namespace quillmark
