#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "builders/apple_double_builder.h"
#include "builders/temp_folder.h"
#include "platform/files/font_file.h"

namespace quillmark {
namespace {

// A font file of the disk, looked up anew.
struct Opened {
  explicit Opened(const std::string& path) : file(access, path) {}
  FileAccess access;
  FontFile file;
};

FinderInfo ReadFinderInfo(const std::string& path) { return Opened(path).file.Finder(); }
std::uint64_t TotalForkLength(const std::string& path) { return Opened(path).file.TotalLength(); }
std::optional<Fork> OpenDataFork(const std::string& path) { return Opened(path).file.DataFork(); }
std::optional<Fork> OpenResourceFork(const std::string& path) {
  Opened opened(path);
  const auto& found = opened.file.ResourceFork();
  return found ? std::optional(found->fork) : std::nullopt;
}

// The bytes that a fork gives of a range.
std::string Read(const Fork& fork, std::uint64_t offset, std::size_t length) {
  std::string bytes(length, '\0');
  bytes.resize(fork.ReadAt(offset, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()}));
  return bytes;
}

std::string Contents(const std::optional<Fork>& fork) {
  return fork ? Read(*fork, 0, fork->length()) : "(none)";
}

std::string Sidecar(const std::string& fork) {
  return AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork(fork).Build();
}

struct ForksTest : testing::Test {
  const TempFolder folder_;
  const std::string font_ = folder_.Write("font", "data");
};

TEST_F(ForksTest, EachCarrierFileServesAndTheFirstInOrderWins) {
  const std::string font = folder_.Write("one/two/font", "");
  const std::vector<std::string> files = {
      "one/two/._font",          "one/two/__MACOSX/._font",   "one/__MACOSX/two/._font",
      "__MACOSX/one/two/._font", "one/two/.AppleDouble/font", "one/two/resource.frk/font",
  };
  for (auto name = files.rbegin(); name != files.rend(); ++name) {
    const bool raw = *name == files.back();
    const std::string path = folder_.Write(*name, raw ? *name : Sidecar(*name));
    const ResourceForkLocation found = Opened(font).file.ResourceFork().value();
    EXPECT_EQ(Contents(found.fork), *name);
    EXPECT_TRUE(std::filesystem::equivalent(found.where, path)) << *name;
    EXPECT_EQ(TotalForkLength(font), name->size());
    EXPECT_EQ(ReadFinderInfo(font).type, raw ? 0u : FourCharCode("FFIL")) << *name;
  }
  // A carrier without a byte of fork does not count.
  folder_.Write(files[0], Sidecar(""));
  folder_.Write(files[1], "");
  EXPECT_EQ(Contents(OpenResourceFork(font)), files[2]);
}

// Also with too few descriptors to go from folder to folder, and however the path is written.
TEST_F(ForksTest, UnzippedForksAreFoundInEveryFolderAbove) {
  constexpr std::size_t kDepth = 70;
  std::string below;
  for (std::size_t i = 0; i < kDepth; ++i) below += "d/";
  folder_.Write(below + "font", "");
  std::filesystem::create_symlink(folder_.path(), folder_.Path("link"));
  struct rlimit limit = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  const int lowest = ::dup(0);
  ::close(lowest);
  const struct rlimit one_more = {static_cast<rlim_t>(lowest) + 1, limit.rlim_max};
  for (const std::size_t level : {0UL, 1UL, 27UL, 28UL, 29UL, 30UL, 31UL, 60UL, 61UL, 62UL, 63UL, kDepth}) {
    const std::string unzipped = below.substr(0, 2 * level) + "__MACOSX";
    const std::string name = unzipped + "/" + below.substr(2 * level) + "._font";
    folder_.Write(name, Sidecar(name));
    for (const char* way : {"/d/../link/", "/link//"}) {
      EXPECT_EQ(Contents(OpenResourceFork(folder_.path() + way + below + "font")), name);
    }
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &one_more), 0);
    const std::string found = Contents(OpenResourceFork(folder_.Path(below + "font")));
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(found, name);
    std::filesystem::remove_all(folder_.Path(unzipped));
  }
}

TEST_F(ForksTest, AttributesComeBeforeSidecars) {
  folder_.Write("._font", Sidecar("sidecar"));
  const auto set = [&](const char* name, const std::string& value) {
    return ::setxattr(font_.c_str(), name, value.data(), value.size(), 0) == 0;
  };
  if (!set("user.org.netatalk.ResourceFork", "netatalk")) {
    GTEST_SKIP() << "this file system has no extended attributes";
  }
  EXPECT_EQ(Contents(OpenResourceFork(font_)), "netatalk");
  const std::string large(3000, 'a');  // more than a first guess at a value's size
  ASSERT_TRUE(set("user.com.apple.ResourceFork", large));
  EXPECT_EQ(Contents(OpenResourceFork(font_)), large);
  EXPECT_EQ(TotalForkLength(font_), 4 + large.size());
  ASSERT_TRUE(set("user.com.apple.ResourceFork", ""));
  ASSERT_TRUE(set("user.org.netatalk.ResourceFork", ""));
  EXPECT_EQ(Contents(OpenResourceFork(font_)), "sidecar");

  EXPECT_EQ(ReadFinderInfo(font_).creator, FourCharCode("DMOV"));
  ASSERT_TRUE(set("user.org.netatalk.Metadata", AppleDoubleBuilder().FinderInfo("tfil", "NETA").Build()));
  EXPECT_EQ(ReadFinderInfo(font_).creator, FourCharCode("NETA"));
  ASSERT_TRUE(set("user.com.apple.FinderInfo", std::string(8, '\0')));
  EXPECT_EQ(ReadFinderInfo(font_).creator, 0u);  // the first source that has any, whatever it says
}

TEST_F(ForksTest, OddAppleDoubleFiles) {
  const auto fork_from = [&](const std::string& sidecar) {
    folder_.Write("._font", sidecar);
    return Contents(OpenResourceFork(font_));
  };
  // Version, start of the second entry, number of entries, magic number.
  const std::tuple<std::size_t, std::uint32_t, const char*> rows[] = {
      {4, 0x7FFF0001, "first"},
      {AppleDoubleBuilder::kFirstEntryOffset + 12 + 4, 0xFFFFFFFF, "(none)"},  // start and length wrap
      {AppleDoubleBuilder::kCountOffset - 2, 0x0000FFFF, "first"},             // more than the file holds
      {0, 0x00051600, "(none)"}};                                              // AppleSingle
  for (const auto& [offset, value, fork] : rows) {
    AppleDoubleBuilder two;
    two.Entry(3, "name").ResourceFork("first").ResourceFork("second");
    two.SetU32(offset, value);
    EXPECT_EQ(fork_from(two.Build()), fork) << offset;
  }

  const std::string whole = AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork("fork").Build();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(fork_from(whole.substr(0, length)), "(none)") << length;
    const bool holds_info = length >= AppleDoubleBuilder::kFirstEntryOffset + 2 * 12 + 32;
    EXPECT_EQ(ReadFinderInfo(font_).type, holds_info ? FourCharCode("FFIL") : 0u) << length;
  }
}

TEST_F(ForksTest, OnlyRegularFilesHaveForksAndNothingBlocks) {
  ASSERT_EQ(::mkfifo(folder_.Path("fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(folder_.Path("._font").c_str(), 0600), 0);
  std::filesystem::create_directory(folder_.Path("folder"));
  std::filesystem::create_symlink("nowhere", folder_.Path("dangling"));
  std::filesystem::create_symlink("font", folder_.Path("link"));
  for (const std::string name : {"fifo", "folder", "dangling", "missing", "font/"}) {
    folder_.Write("resource.frk/" + name + (name == "font/" ? "x" : ""), "fork");
    const std::string path = folder_.Path(name);
    EXPECT_FALSE(IsRegularFile(path) || OpenDataFork(path) || OpenResourceFork(path)) << name;
    EXPECT_EQ(TotalForkLength(path), 0u) << name;
  }
  EXPECT_FALSE(OpenDataFork("/dev/zero") || OpenDataFork(font_ + '\0' + "x"));
  EXPECT_EQ(Contents(OpenDataFork(folder_.Path("link"))), "data");
  EXPECT_FALSE(OpenResourceFork(font_));  // its sidecar is a FIFO
}

TEST_F(ForksTest, AFontFileIsLookedUpAndOpenedOnce) {
  const std::string sidecar = folder_.Write("._font", Sidecar("fork"));
  FileAccess access;
  FontFile file(access, font_);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Contents(file.ResourceFork()->fork), "fork");
    EXPECT_EQ(file.Finder().type, FourCharCode("FFIL"));
    EXPECT_EQ(Contents(file.DataFork()), "data");
    EXPECT_EQ(file.TotalLength(), 8u);
    EXPECT_TRUE(file.Status().regular && file.Sums().has_resource_fork);
    std::filesystem::remove(sidecar);
    std::filesystem::remove(font_);
  }
}

// Two forks of one file share its block, and reads in between find it at any place.
TEST_F(ForksTest, BlocksAndReadsGiveTheFileWhereverTheBlockStands) {
  std::string bytes;
  for (std::uint32_t i = 0; i < 200'000; ++i) bytes += static_cast<char>(i * 31 + i / 251);
  const std::string path = folder_.Write("font", bytes);
  const Fork whole = *OpenDataFork(path);
  const Fork part = *whole.Part(100, 150'000);
  EXPECT_EQ(Read(whole, 70'000, 10), bytes.substr(70'000, 10));
  EXPECT_EQ(Read(whole, 3, 10), bytes.substr(3, 10));
  std::string joined;
  while (joined.size() < part.length()) {
    ASSERT_FALSE(part.BlockAt(joined.size()).empty());
    joined += AsText(part.BlockAt(joined.size()));
    EXPECT_EQ(Read(whole, joined.size(), 5), bytes.substr(joined.size(), 5));
    EXPECT_EQ(Read(whole, 199'998, 5), bytes.substr(199'998));
  }
  EXPECT_EQ(joined, bytes.substr(100, 150'000));
  EXPECT_TRUE(part.BlockAt(150'000).empty() && whole.BlockAt(200'000).empty());
  EXPECT_EQ(Read(whole, 200'000, 1), "");

  std::filesystem::resize_file(path, 140'000);
  EXPECT_EQ(AsText(whole.BlockAt(10)), bytes.substr(10, whole.BlockAt(10).size()));
  EXPECT_EQ(AsText(whole.BlockAt(139'999)).substr(0, 3), bytes.substr(139'999, 1) + std::string(2, '\0'));
  EXPECT_EQ(Read(whole, 139'999, 3), bytes.substr(139'999, 1));
}

}  // namespace
}  // namespace quillmark
