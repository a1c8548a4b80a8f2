#include "platform/apple_double.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quillmark {
namespace {

// Magic number, version, 16 bytes of filler, number of entries.
constexpr std::size_t kHeaderSize = 26;
constexpr std::size_t kEntrySize = 12;

}  // namespace

std::optional<AppleDoubleEntry> FindAppleDoubleEntry(const Fork& file, std::uint32_t number) {
  std::array<std::uint8_t, kHeaderSize> header = {};
  if (file.ReadAt(0, header) != header.size()) return std::nullopt;
  if (U32At(header, 0) != kAppleDoubleMagic) return std::nullopt;
  const std::size_t count = U16At(header, kHeaderSize - 2).value_or(0);

  // A table that the file cuts short still holds the entries before the cut.
  std::vector<std::uint8_t> table(std::min<std::uint64_t>(count * kEntrySize, file.length() - kHeaderSize));
  table.resize(file.ReadAt(kHeaderSize, table));
  ByteReader reader(table);
  while (reader.remaining() >= kEntrySize) {
    const auto id = reader.U32();
    const auto start = reader.U32();
    const auto length = reader.U32();
    if (id != number) continue;
    if (*start > file.length() || *length > file.length() - *start) return std::nullopt;
    return AppleDoubleEntry{*start, *length};
  }
  return std::nullopt;
}

}  // namespace quillmark
