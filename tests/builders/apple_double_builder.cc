#include "builders/apple_double_builder.h"

namespace quillmark {

std::string AppleDoubleBuilder::Lay() const {
  BigEndianWriter file;
  file.U32(0x00051607).U32(version_).Zeros(16).U16(static_cast<std::uint32_t>(entries_.size()));
  std::size_t start = kFirstEntryOffset + 12 * entries_.size();
  for (const auto& [number, bytes] : entries_) {
    file.U32(number).U32(static_cast<std::uint32_t>(start)).U32(static_cast<std::uint32_t>(bytes.size()));
    start += bytes.size();
  }
  for (const auto& [number, bytes] : entries_) file.Text(bytes);
  return file.bytes();
}

}  // namespace quillmark
