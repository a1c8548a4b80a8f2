#include "platform/resource_manager/resource_map.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

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
      text +=
          " " + std::to_string(map.ID(*key)) + "/" + map.Name(*key).value_or("-") + "/" + DataOf(map, *key);
      if (map.Attributes(*key) != 0) text += "/" + std::to_string(map.Attributes(*key));
      EXPECT_TRUE(map.Find(*type, map.ID(*key)));
    }
    text += "\n";
  }
  return text;
}

std::string Written(const ResourceMap& map) {
  std::string fork;
  EXPECT_TRUE(map.Write([&](Bytes bytes) {
    fork.append(AsText(bytes));
    return true;
  }));
  return fork;
}

ResourceForkBuilder Suitcase() {
  ResourceForkBuilder builder;
  builder.Add(kFond, 128, "fond", "Times").Add(kNfnt, 129, "bitmap").Add(kNfnt, -5, "", "");
  builder.Add(kNfnt, 129, "second", std::nullopt, ResourceForkBuilder::kProtected)
      .Add(kFond, 1, "x", "Times");
  return builder;
}
constexpr char kSuitcaseListing[] =
    "FOND: 128/Times/fond 1/Times/x\n"
    "NFNT: 129/-/bitmap -5// 129/-/second/8\n";

TEST(ResourceMapTest, ReadsMapsInAnyOrder) {
  for (const std::string& fork : {Suitcase().Build(), Suitcase().OddOrder().MapFirst().Build()}) {
    auto map = Open(fork);
    ASSERT_TRUE(map);
    EXPECT_EQ(Listing(*map), kSuitcaseListing);
    EXPECT_EQ(DataOf(*map, *map->Find(kNfnt, 129)), "bitmap");  // the first of the ID
  }
}

TEST(ResourceMapTest, OddButWellFormedMaps) {
  auto map = Open(ResourceForkBuilder().Build());
  ASSERT_TRUE(map);
  EXPECT_EQ(map->CountTypes(), 0u);  // FFFF types

  map = Open(ResourceForkBuilder().Add(kFond, 1, "a").AddEmptyType(kFond).AddEmptyType(kNfnt).Build());
  ASSERT_TRUE(map);
  EXPECT_EQ(Listing(*map), "FOND: 1/-/a\nNFNT:\n");  // of a type listed twice the first entry counts

  const std::string plain = Suitcase().Build();
  const std::size_t reference = ResourceForkBuilder::ReferenceOffset(plain, 1, 0);
  ResourceForkBuilder lost_data = Suitcase();
  lost_data.SetU32(reference + 4, 0x00FFFFF0);
  map = Open(lost_data.Build());
  ASSERT_TRUE(map);
  EXPECT_FALSE(map->Data(*map->Find(kNfnt, 129)));  // no later resource of the ID is tried

  ResourceForkBuilder lost_name = Suitcase();
  lost_name.SetU16(reference + 2, 0xFFFE);
  lost_name.SetU8(plain.size() - 7, 200);  // length of the second "Times", before an empty name
  map = Open(lost_name.Build());
  ASSERT_TRUE(map);
  EXPECT_FALSE(map->Name(*map->Find(kNfnt, 129)));
  EXPECT_FALSE(map->Name(*map->Find(kFond, 1)));
}

TEST(ResourceMapTest, EveryCutAndEveryFieldOpensOrIsRefused) {
  ResourceForkBuilder small_map = Suitcase();
  small_map.SetU32(12, 29);
  EXPECT_FALSE(Open(small_map.Build()));
  for (const std::string& fork : {Suitcase().Build(), Suitcase().OddOrder().MapFirst().Build()}) {
    for (std::size_t length = 0; length < fork.size(); ++length) {
      EXPECT_FALSE(Open(fork.substr(0, length))) << length;
    }
    int opened = 0;
    const std::size_t map_start = U32At(AsBytes(fork), 4).value();
    const std::size_t map_end = map_start + U32At(AsBytes(fork), 12).value();
    // Every 16 bits of the header, and of the lists behind the map's own header.
    for (std::size_t offset = 0; offset + 2 <= map_end; offset = offset == 14 ? map_start + 24 : offset + 2) {
      for (const std::uint32_t value : {0x0000u, 0x0001u, 0x7FFFu, 0x8000u, 0xFFFFu}) {
        std::string spoiled = fork;
        spoiled.replace(offset, 2, BigEndianWriter().U16(value).bytes());
        auto map = Open(spoiled);
        if (!map) continue;
        ++opened;
        const std::string before = Listing(*map);
        auto again = Open(Written(*map));
        ASSERT_TRUE(again) << offset << " " << value;
        if (map->CountResources(kFond) + map->CountResources(kNfnt) == 5) {
          EXPECT_EQ(Listing(*again), before) << offset << " " << value;
        }
      }
    }
    EXPECT_GT(opened, 20);
  }
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
    for (const std::uint32_t type : {1u, 2u, 3u}) {
      ASSERT_TRUE(map->Find(type, map->ID(*map->At(type, i))));
    }
  }
  // Unshared, the lists would outgrow their 16-bit offsets by far.
  EXPECT_FALSE(map->Write([](Bytes) { return true; }));
}

TEST(ResourceMapTest, RemovalAndWritingBackKeepTheRest) {
  std::string fork = Suitcase().OddOrder().Build();
  fork.replace(20, 4, "kept");  // between header and data
  auto map = Open(fork);
  ASSERT_TRUE(map);
  EXPECT_FALSE(map->Remove(*map->At(kNfnt, 2)));  // protected
  EXPECT_FALSE(map->changed());
  EXPECT_TRUE(map->Remove(*map->Find(kNfnt, 129)));
  EXPECT_EQ(DataOf(*map, *map->Find(kNfnt, 129)), "second");
  EXPECT_TRUE(map->Remove(*map->Find(kFond, 128)));
  std::string rewritten = Written(*map);
  EXPECT_EQ(rewritten.substr(20, 4), "kept");
  auto again = Open(rewritten);
  ASSERT_TRUE(again);
  EXPECT_EQ(Listing(*again), "FOND: 1/Times/x\nNFNT: -5// 129/-/second/8\n");

  EXPECT_TRUE(again->Remove(*again->Find(kFond, 1)));
  EXPECT_EQ(again->CountTypes(), 1u);  // a type goes with its last resource
}

struct CarrierCase {
  std::optional<ForkCarrier> carrier;
  const char* file;  // that carries the fork
};
const CarrierCase kCarriers[] = {{std::nullopt, "font"},
                                 {ForkCarrier::kAppleDouble, "._font"},
                                 {ForkCarrier::kRawFork, "resource.frk/font"}};

std::optional<ResourceMap> OpenFrom(const CarrierCase& row, const std::string& font) {
  return ResourceMap::Open(row.carrier ? *OpenResourceFork(font) : *OpenDataFork(font));
}

std::string Wrap(const CarrierCase& row, const std::string& fork) {
  if (row.carrier != ForkCarrier::kAppleDouble) return fork;
  return AppleDoubleBuilder().Entry(3, "name").ResourceFork(fork).FinderInfo("FFIL", "DMOV").Build();
}

TEST(ResourceMapTest, WritesBackToEachCarrierFile) {
  for (const CarrierCase& row : kCarriers) {
    SCOPED_TRACE(row.file);
    const TempFolder folder;
    const std::string font = folder.Write("font", "data");
    const std::string carrying = folder.Write(row.file, Wrap(row, Suitcase().Build()));
    ::chmod(carrying.c_str(), 0640);
    const bool attribute = ::setxattr(carrying.c_str(), "user.note", "kept", 4, 0) == 0;
    const std::string link = folder.Path("link");
    std::filesystem::create_symlink(carrying, link);
    auto map = OpenFrom(row, font);
    ASSERT_TRUE(map && map->Remove(*map->Find(kNfnt, 129)));
    const MapOrigin origin{row.carrier ? font : link, row.carrier, row.carrier ? link : ""};
    ASSERT_TRUE(WriteMap(origin, *map));

    auto again = OpenFrom(row, font);
    ASSERT_TRUE(again);
    EXPECT_EQ(Listing(*again), "FOND: 128/Times/fond 1/Times/x\nNFNT: -5// 129/-/second/8\n");
    EXPECT_EQ(ReadFinderInfo(font).type != 0, row.carrier == ForkCarrier::kAppleDouble);
    struct stat found = {};
    ASSERT_EQ(::stat(carrying.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777u, 0640u);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    char note[4] = {};
    EXPECT_EQ(::getxattr(carrying.c_str(), "user.note", note, sizeof note), attribute ? 4 : -1);
    if (!attribute) continue;
    const char* name = "user.com.apple.ResourceFork";  // and from there into an attribute, which comes first
    ASSERT_TRUE(WriteMap({font, ForkCarrier::kExtendedAttribute, name}, *again));
    EXPECT_EQ(FindResourceFork(font)->carrier, ForkCarrier::kExtendedAttribute);
  }
}

TEST(ResourceMapTest, FailedWriteLeavesTheOldFileWholeAndNothingElse) {
  for (const CarrierCase& row : kCarriers) {
    SCOPED_TRACE(row.file);
    const TempFolder folder;
    const std::string font = folder.Write("font", "data");
    const std::string bytes =
        Wrap(row, ResourceForkBuilder().Add(kFond, 1, std::string(5000, 'x')).Add(kFond, 2, "y").Build());
    const std::string carrying = folder.Write(row.file, bytes);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit full_disk = {3000, 3000};
      ::setrlimit(RLIMIT_FSIZE, &full_disk);
      auto map = OpenFrom(row, font);
      const bool removed = map && map->Remove(*map->Find(kFond, 2));
      ::_exit(removed && !WriteMap({font, row.carrier, carrying}, *map) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ReadFile(carrying), bytes);
    const auto beside = std::filesystem::path(carrying).parent_path();
    for (const auto& entry : std::filesystem::directory_iterator(beside)) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".quillmark")) << entry.path();
    }
  }
}

TEST(ResourceMapTest, AppleDoubleWithOverlappingEntriesIsNotWritten) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  AppleDoubleBuilder builder;
  builder.ResourceFork(Suitcase().Build()).Entry(3, "name");
  builder.SetU32(AppleDoubleBuilder::kFirstEntryOffset + 12 + 4, 100);  // "name" inside the fork
  const std::string sidecar = folder.Write("._font", builder.Build());
  auto map = ResourceMap::Open(*OpenResourceFork(font));
  ASSERT_TRUE(map && map->Remove(*map->Find(kFond, 128)));
  EXPECT_FALSE(WriteMap({font, ForkCarrier::kAppleDouble, sidecar}, *map));
  EXPECT_EQ(ReadFile(sidecar), builder.Build());
}

// A bitmap font turned into a resource map by a program of other people, and read by it after a rewrite.
TEST(ResourceMapTest, AgreesWithAnotherReaderAndWriter) {
  const TempFolder folder;
  folder.Write(
      "marker.bdf",
      "STARTFONT 2.1\nFONT -Quill-Marker-Medium-R-Normal--8-80-75-75-C-80-MacRoman-0\nSIZE 8 75 75\n"
      "FONTBOUNDINGBOX 8 8 0 0\nSTARTPROPERTIES 8\nFAMILY_NAME \"Marker\"\nFONT_ASCENT 7\nFONT_DESCENT 1\n"
      "PIXEL_SIZE 8\nPOINT_SIZE 80\nDEFAULT_CHAR 65\nCHARSET_ENCODING \"0\"\nCHARSET_REGISTRY \"MacRoman\"\n"
      "ENDPROPERTIES\nCHARS 1\nSTARTCHAR A\nENCODING 65\nSWIDTH 1000 0\nDWIDTH 8 0\nBBX 8 2 0 0\nBITMAP\n18\n"
      "24\nENDCHAR\nENDFONT\n");
  const std::string command = "cd '" + folder.path() + "' && ufond -dfont marker.bdf > log 2>&1";
  const int status = std::system(command.c_str());
  if (WEXITSTATUS(status) == 127) GTEST_SKIP() << "fondu is not installed";
  ASSERT_EQ(status, 0) << ReadFile(folder.Path("log"));
  const std::string dfont = folder.Path("Marker.fam.dfont");
  auto map = ResourceMap::Open(*OpenDataFork(dfont));
  ASSERT_TRUE(map);
  EXPECT_EQ(map->CountTypes(), 2u);
  ASSERT_EQ(map->CountResources(kNfnt), 1u);
  ASSERT_EQ(map->CountResources(kFond), 1u);
  EXPECT_EQ(map->Name(*map->At(kFond, 0)), "Marker");
  EXPECT_EQ(DataOf(*map, *map->At(kFond, 0)).substr(2, 2),
            BigEndianWriter().I16(map->ID(*map->At(kFond, 0))).bytes());

  const auto shown = [&](const std::string& fork) {
    folder.Write("shown.dfont", fork);
    EXPECT_EQ(std::system(("cd '" + folder.path() + "' && showfond shown.dfont > shown 2>&1").c_str()), 0);
    return ReadFile(folder.Path("shown"));
  };
  const std::string before = shown(ReadFile(dfont));
  EXPECT_NE(before.find("FOND Marker"), std::string::npos);
  EXPECT_EQ(shown(Written(*map)), before);
}

TEST(ResourceMapTest, SharedAndBrokenDataStayAsTheyAreWhenWritten) {
  ResourceForkBuilder builder = Suitcase();
  const std::string plain = builder.Build();
  const std::size_t fond = ResourceForkBuilder::ReferenceOffset(plain, 0, 0);
  const std::size_t nfnt = ResourceForkBuilder::ReferenceOffset(plain, 1, 0);
  builder.SetU32(nfnt + 4, U32At(AsBytes(plain), fond + 4).value());  // NFNT 129 shares the FOND's data
  builder.SetU32(nfnt + 12 + 4, 0x00FFFFFF);                          // NFNT -5 has none
  auto map = Open(builder.Build());
  ASSERT_TRUE(map);
  auto again = Open(Written(*map));
  ASSERT_TRUE(again);
  EXPECT_EQ(Listing(*again), Listing(*map));
  EXPECT_EQ(again->Data(*again->Find(kFond, 128))->start, again->Data(*again->Find(kNfnt, 129))->start);
}

}  // namespace
}  // namespace quillmark
