#include "platform/files/apple_double.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

// Magic number, version, 16 bytes of filler, number of entries.
constexpr std::size_t kHeaderSize = 26;
constexpr std::size_t kEntrySize = 12;  // number, start, length

struct TableEntry {
  std::uint32_t number = 0;
  std::uint32_t start = 0;
  std::uint32_t length = 0;
};

// The header and the whole entries of the table: one that the file cuts short holds those before the cut.
// Empty when this is no AppleDouble file.
std::vector<std::uint8_t> ReadHead(const Fork& file) {
  std::vector<std::uint8_t> head(kHeaderSize);
  if (file.ReadAt(0, head) != head.size() || U32At(head, 0) != kAppleDoubleMagic) return {};
  const std::uint64_t count = U16At(head, kHeaderSize - 2).value_or(0);
  const std::uint64_t whole_entries = (file.length() - kHeaderSize) / kEntrySize;
  head.resize(kHeaderSize + std::min(count, whole_entries) * kEntrySize);
  if (file.ReadAt(0, head) != head.size()) return {};
  return head;
}

std::vector<TableEntry> TableOf(Bytes head) {
  std::vector<TableEntry> table;
  ByteReader reader(head);
  if (!reader.Skip(kHeaderSize)) return table;
  table.reserve(reader.remaining() / kEntrySize);
  while (reader.remaining() >= kEntrySize) {
    const auto number = reader.U32();
    const auto start = reader.U32();
    const auto length = reader.U32();
    table.push_back({*number, *start, *length});
  }
  return table;
}

}  // namespace

std::optional<AppleDoubleEntry> FindAppleDoubleEntry(const Fork& file, std::uint32_t number) {
  for (const TableEntry& entry : TableOf(ReadHead(file))) {
    if (entry.number != number) continue;
    if (!file.Part(entry.start, entry.length)) return std::nullopt;
    return AppleDoubleEntry{entry.start, entry.length};
  }
  return std::nullopt;
}

bool ReplaceAppleDoubleEntry(const std::string& path, std::uint32_t number,
                             const std::function<bool(const ByteSink&)>& produce) {
  auto opened = RegularFile::Open(path);
  const auto file = opened ? std::optional(Fork(*std::move(opened))) : std::nullopt;
  const auto replaced = file ? FindAppleDoubleEntry(*file, number) : std::nullopt;
  if (!replaced) return false;
  std::vector<std::uint8_t> head = ReadHead(*file);
  if (replaced->start < head.size()) return false;

  std::uint64_t new_length = 0;
  const bool measured = produce([&](Bytes bytes) {
    new_length += bytes.size();
    return true;
  });
  const std::uint64_t old_end = std::uint64_t{replaced->start} + replaced->length;
  const std::uint64_t new_end = replaced->start + new_length;
  if (!measured || new_end + (file->length() - old_end) > 0xFFFFFFFFu) return false;

  std::size_t at = kHeaderSize;
  bool found = false;
  for (const TableEntry& entry : TableOf(head)) {
    const bool is_it = !found && entry.number == number;
    found = found || is_it;
    const std::uint64_t moved_start = entry.start - old_end + new_end;
    if (is_it) {
      if (!PutU32At(head, at + 8, static_cast<std::uint32_t>(new_length))) return false;
    } else if (entry.start >= old_end) {
      if (moved_start > 0xFFFFFFFFu) return false;
      if (!PutU32At(head, at + 4, static_cast<std::uint32_t>(moved_start))) return false;
    } else if (entry.length > 0 && std::uint64_t{entry.start} + entry.length > replaced->start) {
      return false;
    }
    at += kEntrySize;
  }
  return ReplaceFile(path, [&](const ByteSink& sink) {
    return sink(head) && file->Copy(head.size(), replaced->start - head.size(), sink) && produce(sink) &&
           file->Copy(old_end, file->length() - old_end, sink);
  });
}

}  // namespace quillmark
