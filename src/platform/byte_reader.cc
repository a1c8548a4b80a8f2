#include "platform/byte_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillmark {
namespace {

// Loads an integer as it lies in memory; the caller has taken exactly its bytes.
template <typename T>
T Load(Bytes bytes) {
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

std::uint32_t SwapBytes(std::uint32_t v) {
  return (v << 24) | ((v & 0xFF00u) << 8) | ((v >> 8) & 0xFF00u) | (v >> 24);
}

constexpr bool kLittleEndianHost = std::endian::native == std::endian::little;

}  // namespace

std::uint32_t emdBigToHostU32(std::uint32_t value) { return kLittleEndianHost ? SwapBytes(value) : value; }

std::uint16_t emdBigToHostInt16(std::uint16_t value) {
  return kLittleEndianHost ? static_cast<std::uint16_t>((value << 8) | (value >> 8)) : value;
}

std::optional<Bytes> ByteReader::Take(std::size_t n) {
  if (n > rest_.size()) return std::nullopt;
  const Bytes taken = rest_.first(n);
  rest_ = rest_.subspan(n);
  return taken;
}

bool ByteReader::Skip(std::size_t n) { return Take(n).has_value(); }

std::optional<std::uint8_t> ByteReader::U8() {
  const auto bytes = Take(1);
  if (!bytes) return std::nullopt;
  return bytes->front();
}

std::optional<std::uint16_t> ByteReader::U16() {
  const auto bytes = Take(2);
  if (!bytes) return std::nullopt;
  return emdBigToHostInt16(Load<std::uint16_t>(*bytes));
}

std::optional<std::int16_t> ByteReader::I16() {
  const auto value = U16();
  if (!value) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

std::optional<std::uint32_t> ByteReader::U24() {
  const auto bytes = Take(3);
  if (!bytes) return std::nullopt;
  return (std::uint32_t{(*bytes)[0]} << 16) | (std::uint32_t{(*bytes)[1]} << 8) | (*bytes)[2];
}

std::optional<std::uint32_t> ByteReader::U32() {
  const auto bytes = Take(4);
  if (!bytes) return std::nullopt;
  return emdBigToHostU32(Load<std::uint32_t>(*bytes));
}

std::optional<ByteReader> ByteReader::Sub(std::size_t offset, std::size_t length) const {
  const auto bytes = Slice(block_, offset, length);
  if (!bytes) return std::nullopt;
  return ByteReader(*bytes);
}

std::optional<Bytes> Slice(Bytes block, std::size_t offset, std::size_t length) {
  if (offset > block.size() || length > block.size() - offset) return std::nullopt;
  return block.subspan(offset, length);
}

std::optional<std::uint8_t> U8At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 1);
  if (!bytes) return std::nullopt;
  return bytes->front();
}

std::optional<std::uint16_t> U16At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 2);
  if (!bytes) return std::nullopt;
  return emdBigToHostInt16(Load<std::uint16_t>(*bytes));
}

std::optional<std::int16_t> I16At(Bytes block, std::size_t offset) {
  const auto value = U16At(block, offset);
  if (!value) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

std::optional<std::uint32_t> U32At(Bytes block, std::size_t offset) {
  const auto value = HostU32At(block, offset);
  if (!value) return std::nullopt;
  return emdBigToHostU32(*value);
}

std::optional<std::uint32_t> LittleU32At(Bytes block, std::size_t offset) {
  const auto value = HostU32At(block, offset);
  if (!value) return std::nullopt;
  return kLittleEndianHost ? *value : SwapBytes(*value);
}

std::optional<std::uint32_t> HostU32At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 4);
  if (!bytes) return std::nullopt;
  return Load<std::uint32_t>(*bytes);
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

std::uint32_t SumBigEndianWords(Bytes block) {
  std::uint32_t sum = 0;
  const std::size_t whole = block.size() / 4 * 4;
  for (std::size_t i = 0; i < whole; i += 4) sum += emdBigToHostU32(Load<std::uint32_t>(block.subspan(i, 4)));
  std::uint8_t last[4] = {};
  std::copy(block.begin() + static_cast<std::ptrdiff_t>(whole), block.end(), last);
  return sum + emdBigToHostU32(Load<std::uint32_t>(last));
}

}  // namespace quillmark
