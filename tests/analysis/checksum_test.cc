#include "analysis/checksum.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

#include "builders/apple_double_builder.h"
#include "builders/temp_folder.h"
#include "platform/crc32.h"

namespace quillmark {
namespace {

std::string RandomBytes(std::size_t size) {
  std::mt19937 random(1);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

std::uint32_t Zlib(std::string_view bytes, std::uint32_t crc = 0) {
  return static_cast<std::uint32_t>(crc32_z(crc, AsBytes(bytes).data(), bytes.size()));
}

TEST(Checksum, ContinuesAsZlibDoes) {
  EXPECT_EQ(CChecksum::icrc(AsBytes("123456789"), 0), 0xCBF43926u);
  EXPECT_EQ(CChecksum::icrc(Bytes(), 7), 7u);
  const std::string bytes = RandomBytes(5000);
  for (const std::size_t length : {1u, 1023u, 1024u, 1025u, 5000u}) {
    const std::string_view range = std::string_view(bytes).substr(5000 - length);
    EXPECT_EQ(CChecksum::icrc(AsBytes(range), 7), Zlib(range, 7)) << length;
    SummedBytes sums;
    sums.Add(AsBytes(range.substr(0, length / 2)));
    sums.Add(AsBytes(range.substr(length / 2)));
    EXPECT_EQ(sums.Continue(7), Zlib(range, 7)) << length;
  }
}

TEST(Checksum, JoinsTheForksOfAFile) {
  const TempFolder folder;
  const std::string data = RandomBytes(200000);  // more than one block
  const std::string fork = RandomBytes(70000);
  const std::uint32_t both = Zlib(data + fork);
  folder.Write("Both", data);
  folder.Write("._Both", AppleDoubleBuilder().ResourceFork(fork).Build());
  folder.Write("Fork", "");
  folder.Write("._Fork", AppleDoubleBuilder().ResourceFork(fork).Build());
  folder.Write("Data", data);
  folder.Write("Empty", "");
  const struct {
    const char* name;
    std::uint32_t on_entry;
    bool returned;
    std::uint32_t checksum, data_fork;
  } rows[] = {{"Both", 0, true, both, Zlib(data)},
              {"Fork", 0, true, Zlib(fork), 0},
              {"Data", Zlib(data), false, Zlib(data), Zlib(data)},
              {"Empty", 7, true, 0, 0},
              {"Missing", 0, false, 0, 0}};
  for (const auto& row : rows) {
    std::uint32_t checksum = row.on_entry;
    std::uint32_t data_fork = 99;
    FileAccess access;
    FontFile file(access, folder.Path(row.name));
    EXPECT_EQ(CChecksum::CalculateFileChecksum(file, &checksum, &data_fork), row.returned)
        << row.name << " " << row.on_entry;
    EXPECT_EQ(checksum, row.checksum) << row.name;
    EXPECT_EQ(data_fork, row.data_fork) << row.name;
  }
}

}  // namespace
}  // namespace quillmark
