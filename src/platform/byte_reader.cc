#include "platform/byte_reader.h"

namespace quillmark {

std::optional<std::uint32_t> LittleU32At(Bytes block, std::size_t offset) {
  const auto value = HostU32At(block, offset);
  if (!value) return std::nullopt;
  return byte_order::kLittleEndianHost ? *value : byte_order::Swap(*value);
}

std::optional<std::uint32_t> HostU32At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 4);
  if (!bytes) return std::nullopt;
  return byte_order::Load<std::uint32_t>(*bytes);
}

bool PutU32At(std::span<std::uint8_t> block, std::size_t offset, std::uint32_t value) {
  if (offset > block.size() || block.size() - offset < 4) return false;
  const std::uint32_t stored = emdBigToHostU32(value);  // the swap is its own inverse
  std::memcpy(block.subspan(offset, 4).data(), &stored, sizeof stored);
  return true;
}

bool StartsWith(Bytes block, std::string_view tag) {
  const auto head = Slice(block, 0, tag.size());
  return head && AsText(*head) == tag;
}

}  // namespace quillmark
