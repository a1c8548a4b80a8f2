#include "analysis/checksum.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "builders/apple_double_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
  return bytes;
}

std::uint32_t Zlib(std::string_view bytes) {
  return static_cast<std::uint32_t>(crc32_z(0, AsBytes(bytes).data(), bytes.size()));
}

TEST(Checksum, JoinsTheForksOfAFile) {
  const TempFolder folder;
  const std::string data = Pattern(200000);  // more than one block
  const std::string fork = Pattern(70000);
  for (const auto& [name, bytes] : {std::pair("Both", data), {"Fork", ""}, {"Data", data}, {"Empty", ""}}) {
    folder.Write(name, bytes);
  }
  folder.Write("._Both", AppleDoubleBuilder().ResourceFork(fork).Build());
  folder.Write("._Fork", AppleDoubleBuilder().ResourceFork(fork).Build());
  const struct {
    const char* name;
    std::uint32_t on_entry;
    bool returned;
    std::uint32_t checksum, data_fork;
  } rows[] = {{"Both", 0, true, Zlib(data + fork), Zlib(data)},
              {"Fork", 0, true, Zlib(fork), 0},
              {"Data", Zlib(data), false, Zlib(data), Zlib(data)},
              {"Empty", 7, true, 0, 0},
              {"Missing", 0, false, 0, 0}};
  for (const auto& row : rows) {
    std::uint32_t checksum = row.on_entry;
    std::uint32_t data_fork = 99;
    FileAccess access;
    FontFile file(access, folder.Path(row.name));
    EXPECT_EQ(CChecksum::CalculateFileChecksum(file, &checksum, &data_fork), row.returned) << row.name;
    EXPECT_EQ(std::pair(checksum, data_fork), std::pair(row.checksum, row.data_fork)) << row.name;
  }
}

}  // namespace
}  // namespace quillmark
