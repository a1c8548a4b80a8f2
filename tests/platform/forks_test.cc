#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "builders/apple_double_builder.h"
#include "builders/temp_folder.h"
#include "platform/files/font_file.h"

namespace quillmark {
namespace {

FinderInfo ReadFinderInfo(const std::string& path) {
  FileAccess access;
  return FontFile(access, path).Finder();
}

std::string Contents(const std::optional<Fork>& fork) {
  if (!fork) return "(none)";
  std::string bytes(fork->length(), '\0');
  bytes.resize(fork->ReadAt(0, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()}));
  return bytes;
}

std::string Sidecar(const std::string& fork) {
  return AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork(fork).Build();
}

TEST(ForksTest, EachCarrierFileServesAndTheFirstInOrderWins) {
  const TempFolder folder;
  const std::string font = folder.Write("one/two/font", "");
  const std::vector<std::string> files = {
      "one/two/._font",          "one/two/__MACOSX/._font",   "one/__MACOSX/two/._font",
      "__MACOSX/one/two/._font", "one/two/.AppleDouble/font", "one/two/resource.frk/font",
  };
  for (auto name = files.rbegin(); name != files.rend(); ++name) {
    const bool raw = *name == files.back();
    const std::string path = folder.Write(*name, raw ? *name : Sidecar(*name));
    const auto found = FindResourceFork(font);
    ASSERT_TRUE(found) << *name;
    EXPECT_EQ(Contents(found->fork), *name);
    EXPECT_TRUE(std::filesystem::equivalent(found->where, path)) << *name;
    EXPECT_EQ(TotalForkLength(font), name->size());
    EXPECT_EQ(ReadFinderInfo(font).type, raw ? 0u : FourCharCode("FFIL")) << *name;
  }
  // A carrier without a byte of fork does not count.
  folder.Write(files[0], Sidecar(""));
  folder.Write(files[1], "");
  EXPECT_EQ(Contents(OpenResourceFork(font)), files[2]);
}

// Also with too few descriptors to go from folder to folder, and however the path is written.
TEST(ForksTest, UnzippedForksAreFoundInEveryFolderAbove) {
  constexpr int kDepth = 70;
  const TempFolder folder;
  std::string below;
  for (int i = 0; i < kDepth; ++i) below += "d/";
  folder.Write(below + "font", "");
  std::filesystem::create_symlink(folder.path(), folder.Path("link"));
  const std::string spelled = folder.Path("d/../link/.//") + below + "font";
  struct rlimit limit = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  for (const int level : {0, 1, 27, 28, 29, 30, 31, 60, 61, 62, 63, kDepth}) {
    SCOPED_TRACE(level);
    const std::size_t split = 2 * static_cast<std::size_t>(level);
    const std::string above = below.substr(0, split);
    const std::string name = above + "__MACOSX/" + below.substr(split) + "._font";
    folder.Write(name, Sidecar(name));
    EXPECT_EQ(Contents(OpenResourceFork(folder.Path(below + "font"))), name);
    EXPECT_EQ(Contents(OpenResourceFork(spelled)), name);
    const int lowest = ::dup(0);
    ::close(lowest);
    const struct rlimit one_more = {static_cast<rlim_t>(lowest) + 1, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &one_more), 0);
    const std::string found = Contents(OpenResourceFork(folder.Path(below + "font")));
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(found, name);
    std::filesystem::remove_all(folder.Path(above + "__MACOSX"));
  }
}

TEST(ForksTest, AttributesComeBeforeSidecars) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  folder.Write("._font", Sidecar("sidecar"));
  const auto set = [&](const char* name, const std::string& value) {
    return ::setxattr(font.c_str(), name, value.data(), value.size(), 0) == 0;
  };
  if (!set("user.org.netatalk.ResourceFork", "netatalk")) {
    GTEST_SKIP() << "this file system has no extended attributes";
  }
  EXPECT_EQ(Contents(OpenResourceFork(font)), "netatalk");
  const std::string large(3000, 'a');  // more than a first guess at a value's size
  ASSERT_TRUE(set("user.com.apple.ResourceFork", large));
  EXPECT_EQ(Contents(OpenResourceFork(font)), large);
  EXPECT_EQ(TotalForkLength(font), 4 + large.size());
  ASSERT_TRUE(set("user.com.apple.ResourceFork", ""));
  ASSERT_TRUE(set("user.org.netatalk.ResourceFork", ""));
  EXPECT_EQ(Contents(OpenResourceFork(font)), "sidecar");

  EXPECT_EQ(ReadFinderInfo(font).creator, FourCharCode("DMOV"));
  ASSERT_TRUE(set("user.org.netatalk.Metadata", AppleDoubleBuilder().FinderInfo("tfil", "NETA").Build()));
  EXPECT_EQ(ReadFinderInfo(font).creator, FourCharCode("NETA"));
  ASSERT_TRUE(set("user.com.apple.FinderInfo", std::string(8, '\0')));
  EXPECT_EQ(ReadFinderInfo(font).creator, 0u);  // the first source that has any, whatever it says
}

TEST(ForksTest, OddAppleDoubleFiles) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  const auto fork_from = [&](const std::string& sidecar) {
    folder.Write("._font", sidecar);
    return Contents(OpenResourceFork(font));
  };
  AppleDoubleBuilder two;
  two.Version(0x7FFF0001).Entry(3, "name").ResourceFork("first").ResourceFork("second");
  EXPECT_EQ(fork_from(two.Build()), "first");

  constexpr std::size_t kFork = AppleDoubleBuilder::kFirstEntryOffset + 12;
  const auto spoiled = [&](std::size_t offset, std::uint32_t value) {
    AppleDoubleBuilder builder = two;
    builder.SetU32(offset, value);
    return fork_from(builder.Build());
  };
  EXPECT_EQ(spoiled(kFork + 4, 0xFFFFFFFF), "(none)") << "start and length wrap";
  EXPECT_EQ(spoiled(AppleDoubleBuilder::kCountOffset - 2, 0x0000FFFF), "first") << "more than the file holds";
  EXPECT_EQ(spoiled(0, 0x00051600), "(none)") << "AppleSingle";

  const std::string whole = AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork("fork").Build();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(fork_from(whole.substr(0, length)), "(none)") << length;
    const bool holds_info = length >= AppleDoubleBuilder::kFirstEntryOffset + 2 * 12 + 32;
    EXPECT_EQ(ReadFinderInfo(font).type, holds_info ? FourCharCode("FFIL") : 0u) << length;
  }
}

TEST(ForksTest, OnlyRegularFilesHaveForksAndNothingBlocks) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  ASSERT_EQ(::mkfifo(folder.Path("fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(folder.Path("._font").c_str(), 0600), 0);
  std::filesystem::create_directory(folder.Path("folder"));
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  std::filesystem::create_symlink("font", folder.Path("link"));
  for (const std::string name : {"fifo", "folder", "dangling", "missing", "font/"}) {
    folder.Write("resource.frk/" + name + (name == "font/" ? "x" : ""), "fork");
    const std::string path = folder.Path(name);
    EXPECT_FALSE(IsRegularFile(path)) << name;
    EXPECT_FALSE(OpenDataFork(path)) << name;
    EXPECT_FALSE(OpenResourceFork(path)) << name;
    EXPECT_EQ(TotalForkLength(path), 0u) << name;
  }
  EXPECT_FALSE(OpenDataFork("/dev/zero"));
  EXPECT_FALSE(OpenDataFork(font + '\0' + "x"));
  EXPECT_EQ(Contents(OpenDataFork(folder.Path("link"))), "data");
  EXPECT_FALSE(OpenResourceFork(font));  // its sidecar is a FIFO
}

TEST(ForksTest, AFontFileIsLookedUpAndOpenedOnce) {
  const TempFolder folder;
  const std::string font = folder.Write("font", "data");
  const std::string sidecar = folder.Write("._font", Sidecar("fork"));
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = open_files();
  {
    FileAccess access;
    FontFile file(access, font);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(Contents(file.ResourceFork()->fork), "fork");
      EXPECT_EQ(file.Finder().type, FourCharCode("FFIL"));
      EXPECT_EQ(Contents(file.DataFork()), "data");
      EXPECT_EQ(file.TotalLength(), 8u);
      EXPECT_TRUE(file.Status().regular && file.Sums().has_resource_fork);
      std::filesystem::remove(sidecar);
      std::filesystem::remove(font);
    }
    EXPECT_EQ(open_files(), before + 2);
  }
  EXPECT_EQ(open_files(), before);
}

// Two forks of one file share its block, and reads in between find it at any place.
TEST(ForksTest, BlocksAndReadsGiveTheFileWhereverTheBlockStands) {
  std::string bytes;
  for (std::uint32_t i = 0; i < 200'000; ++i) bytes += static_cast<char>(i * 31 + i / 251);
  const TempFolder folder;
  const std::string path = folder.Write("font", bytes);
  const Fork whole = *OpenDataFork(path);
  const Fork part = *whole.Part(100, 150'000);
  const auto read = [&](std::uint64_t offset, std::size_t length) {
    std::string out(length, '\0');
    out.resize(whole.ReadAt(offset, {reinterpret_cast<std::uint8_t*>(out.data()), out.size()}));
    return out;
  };
  EXPECT_EQ(read(70'000, 10), bytes.substr(70'000, 10));
  EXPECT_EQ(read(3, 10), bytes.substr(3, 10));
  std::string joined;
  while (joined.size() < part.length()) {
    const std::string block(AsText(part.BlockAt(joined.size())));
    ASSERT_FALSE(block.empty());
    joined += block;
    EXPECT_EQ(read(joined.size(), 5), bytes.substr(joined.size(), 5));
    EXPECT_EQ(read(199'998, 5), bytes.substr(199'998));
  }
  EXPECT_EQ(joined, bytes.substr(100, 150'000));
  EXPECT_TRUE(part.BlockAt(150'000).empty());
  EXPECT_TRUE(whole.BlockAt(200'000).empty());
  EXPECT_EQ(read(200'000, 1), "");

  std::filesystem::resize_file(path, 140'000);
  EXPECT_EQ(AsText(whole.BlockAt(10)), bytes.substr(10, whole.BlockAt(10).size()));
  EXPECT_EQ(AsText(whole.BlockAt(139'999)).substr(0, 3), bytes.substr(139'999, 1) + std::string(2, '\0'));
  EXPECT_EQ(read(139'999, 3), bytes.substr(139'999, 1));
}

}  // namespace
}  // namespace quillmark
