#include "platform/resource_manager/resource_map.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <string>

#include "builders/apple_double_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/resource_manager/fork_writer.h"

namespace quillmark {
namespace {

FinderInfo ReadFinderInfo(const std::string& path) {
  FileAccess access;
  return FontFile(access, path).Finder();
}

constexpr std::uint32_t kFond = FourCharCode("FOND");
constexpr std::uint32_t kNfnt = FourCharCode("NFNT");

std::optional<ResourceMap> Open(const std::string& fork) {
  return ResourceMap::Open(Fork(std::make_shared<const std::string>(fork)));
}

std::string DataOf(const ResourceMap& map, ResourceMap::Key key) {
  const auto range = map.Data(key);
  if (!range) return "(none)";
  std::string data(range->length, '\0');
  data.resize(map.fork().ReadAt(range->start, {reinterpret_cast<std::uint8_t*>(data.data()), data.size()}));
  return data;
}

// What a map shows, at most 100 resources a type.
std::string Listing(ResourceMap& map) {
  std::string text;
  for (std::size_t t = 0; const auto type = map.TypeAt(t); ++t) {
    text += BigEndianWriter().U32(*type).bytes() + ":";
    for (std::size_t i = 0; i < 100; ++i) {
      const auto key = map.At(*type, i);
      if (!key) break;
      const std::string name = map.Name(*key).value_or("-");
      text += " " + std::to_string(map.ID(*key)) + "/" + name + "/" + DataOf(map, *key);
      if (map.Attributes(*key) != 0) text += "/" + std::to_string(map.Attributes(*key));
      EXPECT_TRUE(map.Find(*type, map.ID(*key)));
    }
    text += "\n";
  }
  return text;
}

std::string ListingOf(const std::string& fork) {
  auto map = Open(fork);
  return map ? Listing(*map) : "refused";
}

// FOND 1 and the first NFNT 129 have one copy of their data.
ResourceForkBuilder Suitcase() {
  ResourceForkBuilder builder;
  builder.Add(kFond, 128, "fond", "Times").Add(kNfnt, 129, "bitmap").Add(kNfnt, -5, "", "");
  builder.Add(kNfnt, 129, "second", std::nullopt, ResourceForkBuilder::kProtected);
  return builder.Add(kFond, 1, "bitmap", "Times").ShareEqualData();
}

TEST(ResourceMapTest, ReadsMapsInAnyOrderAndOddOnes) {
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
    EXPECT_EQ(ListingOf(fork), expected);
    for (std::size_t length = 0; length < fork.size(); ++length) EXPECT_FALSE(Open(fork.substr(0, length)));
  }
  auto map = Open(plain);
  EXPECT_EQ(DataOf(*map, *map->Find(kNfnt, 129)), "bitmap") << "the first of the ID";
}

TEST(ResourceMapTest, TypesThatShareOneLargeListCostNoMoreThanTheFileHolds) {
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

// Whether the map can be written while no file may grow past 3,000 bytes.
bool IsWrittenToAFullDisk(const MapOrigin& origin, const ResourceMap& map) {
  std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const struct rlimit full = {3000, limit.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &full);
  const bool is_written = WriteMap(origin, map);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  return is_written;
}

TEST(ResourceMapTest, WritesBackToEachCarrierFileWholeOrNotAtAll) {
  const std::pair<std::optional<ForkCarrier>, const char*> rows[] = {
      {std::nullopt, "font"},
      {ForkCarrier::kAppleDouble, "._font"},
      {ForkCarrier::kRawFork, "resource.frk/font"}};
  for (const auto& row : rows) {
    const auto carrier = row.first;
    SCOPED_TRACE(row.second);
    const TempFolder folder;
    const std::string font = folder.Write("font", "data");
    const auto open = [&] {
      return ResourceMap::Open(carrier ? *OpenResourceFork(font) : *OpenDataFork(font)).value();
    };
    ResourceForkBuilder fork = Suitcase().OddOrder().Add(kFond, 2, std::string(5000, 'x'));
    const std::size_t nfnt = ResourceForkBuilder::ReferenceOffset(fork.Build(), 1, 1);
    fork.SetU32(nfnt + 4, 0x00FFFFFF);      // NFNT -5 has no data
    fork.SetU32(20, FourCharCode("kept"));  // between header and data
    std::string bytes = fork.Build();
    if (carrier == ForkCarrier::kAppleDouble) {
      bytes = AppleDoubleBuilder().Entry(3, "name").ResourceFork(bytes).FinderInfo("FFIL", "DMOV").Build();
    }
    const std::string carrying = folder.Write(row.second, bytes);
    ::chmod(carrying.c_str(), 0640);
    const bool attribute = ::setxattr(carrying.c_str(), "user.note", "kept", 4, 0) == 0;
    const std::string link = folder.Path("link");
    std::filesystem::create_symlink(carrying, link);
    ResourceMap map = open();
    EXPECT_FALSE(map.Remove(*map.At(kNfnt, 2)) || map.changed()) << "it is protected";
    ASSERT_TRUE(map.Remove(*map.Find(kFond, 128)));
    const MapOrigin origin{carrier ? font : link, carrier, link};
    EXPECT_FALSE(IsWrittenToAFullDisk(origin, map));
    EXPECT_EQ(ReadFile(carrying), bytes);
    ASSERT_TRUE(WriteMap(origin, map));

    ResourceMap again = open();
    EXPECT_EQ(Listing(again), Listing(map));
    std::array<std::uint8_t, 4> between = {};
    EXPECT_EQ(again.fork().ReadAt(20, between), 4u);
    EXPECT_EQ(AsText(between), "kept");
    EXPECT_EQ(again.Data(*again.Find(kFond, 1))->start, again.Data(*again.Find(kNfnt, 129))->start);
    EXPECT_EQ(ReadFinderInfo(font).type != 0, carrier == ForkCarrier::kAppleDouble);
    struct stat found = {};
    ASSERT_EQ(::stat(carrying.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777u, 0640u);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".quillmark")) << entry.path();
    }
    char note[4] = {};
    EXPECT_EQ(::getxattr(carrying.c_str(), "user.note", note, sizeof note), attribute ? 4 : -1);
    if (!attribute) continue;
    ASSERT_TRUE(again.Remove(*again.Find(kFond, 2)) && again.Remove(*again.Find(kFond, 1)));
    EXPECT_EQ(again.CountTypes(), 1u) << "a type goes with its last resource";
    ASSERT_TRUE(again.Remove(*again.Find(kNfnt, 129)));
    EXPECT_EQ(DataOf(again, *again.Find(kNfnt, 129)), "second");
    const char* name = "user.com.apple.ResourceFork";  // and from there into an attribute, which comes first
    ASSERT_TRUE(WriteMap({font, ForkCarrier::kExtendedAttribute, name}, again));
    EXPECT_EQ(FindResourceFork(font)->carrier, ForkCarrier::kExtendedAttribute);
  }
}

TEST(ResourceMapTest, AppleDoubleWithOverlappingEntriesIsNotWritten) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  AppleDoubleBuilder builder;
  builder.ResourceFork(Suitcase().Build()).Entry(3, "name");
  builder.SetU32(AppleDoubleBuilder::kFirstEntryOffset + 12 + 4, 100);  // "name" inside the fork
  const std::string sidecar = folder.Write("._font", builder.Build());
  const auto map = ResourceMap::Open(*OpenResourceFork(font));
  EXPECT_FALSE(WriteMap({font, ForkCarrier::kAppleDouble, sidecar}, *map));
  EXPECT_EQ(ReadFile(sidecar), builder.Build());
}

}  // namespace
}  // namespace quillmark
