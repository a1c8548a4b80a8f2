// Bounds-checked reading of file bytes: a forward cursor over a block, and reads at fixed offsets. Everything
// is big-endian, as sfnt, resource and AppleDouble structures are, except where a name says otherwise.
// Offsets and lengths from a file are followed here or in an accessor with bounds of its own: Fork::Part,
// SfntData::Range, ResourceMap::Data. Spans returned point into the block that was given. The reads are
// inline, since names and kerning pairs are read one unit at a time. Tests:
// tests/platform/byte_reader_test.cc.
#ifndef QUILLMARK_PLATFORM_BYTE_READER_H_
#define QUILLMARK_PLATFORM_BYTE_READER_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

namespace quillmark {

using Bytes = std::span<const std::uint8_t>;

namespace byte_order {

inline constexpr bool kLittleEndianHost = std::endian::native == std::endian::little;

constexpr std::uint32_t Swap(std::uint32_t v) {
  return (v << 24) | ((v & 0xFF00u) << 8) | ((v >> 8) & 0xFF00u) | (v >> 24);
}

// Loads an integer in the order of its bytes; `bytes` has exactly its size.
template <typename T>
T Load(Bytes bytes) {
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

}  // namespace byte_order

// Converts a value stored in big-endian order to the host's order.
constexpr std::uint32_t emdBigToHostU32(std::uint32_t value) {
  return byte_order::kLittleEndianHost ? byte_order::Swap(value) : value;
}
constexpr std::uint16_t emdBigToHostInt16(std::uint16_t value) {
  return byte_order::kLittleEndianHost ? static_cast<std::uint16_t>((value << 8) | (value >> 8)) : value;
}

// The bytes [offset, offset + length) of `block`, or nothing when they do not all lie inside it.
[[nodiscard]] inline std::optional<Bytes> Slice(Bytes block, std::size_t offset, std::size_t length) {
  if (offset > block.size() || length > block.size() - offset) return std::nullopt;
  return block.subspan(offset, length);
}

// Fields at a fixed offset, for records that are read by offset. Nothing when the field passes the end.

[[nodiscard]] inline std::optional<std::uint8_t> U8At(Bytes block, std::size_t offset) {
  if (offset >= block.size()) return std::nullopt;
  return block[offset];
}

[[nodiscard]] inline std::optional<std::uint16_t> U16At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 2);
  if (!bytes) return std::nullopt;
  return emdBigToHostInt16(byte_order::Load<std::uint16_t>(*bytes));
}

[[nodiscard]] inline std::optional<std::int16_t> I16At(Bytes block, std::size_t offset) {
  const auto value = U16At(block, offset);
  if (!value) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

[[nodiscard]] inline std::optional<std::uint32_t> U32At(Bytes block, std::size_t offset) {
  const auto bytes = Slice(block, offset, 4);
  if (!bytes) return std::nullopt;
  return emdBigToHostU32(byte_order::Load<std::uint32_t>(*bytes));
}

[[nodiscard]] std::optional<std::uint32_t> LittleU32At(Bytes block, std::size_t offset);  // Windows PFM
[[nodiscard]] std::optional<std::uint32_t> HostU32At(Bytes block, std::size_t offset);

// A cursor that moves forward. A failed read changes nothing and returns no value.
class ByteReader {
 public:
  explicit ByteReader(Bytes bytes) : rest_(bytes) {}

  [[nodiscard]] std::optional<std::uint8_t> U8() { return Pass(U8At(rest_, 0)); }
  [[nodiscard]] std::optional<std::uint16_t> U16() { return Pass(U16At(rest_, 0)); }
  [[nodiscard]] std::optional<std::uint32_t> U32() { return Pass(U32At(rest_, 0)); }
  [[nodiscard]] std::optional<Bytes> Take(std::size_t n) {
    const auto taken = Slice(rest_, 0, n);
    if (taken) rest_ = rest_.subspan(n);
    return taken;
  }
  [[nodiscard]] bool Skip(std::size_t n) { return Take(n).has_value(); }

  std::size_t remaining() const { return rest_.size(); }

 private:
  // Moves past a value that was read, if one was.
  template <typename T>
  std::optional<T> Pass(std::optional<T> value) {
    if (value) rest_ = rest_.subspan(sizeof(T));
    return value;
  }

  Bytes rest_;
};

// Writes a big-endian value; false, changing nothing, when it does not fit at `offset`.
[[nodiscard]] bool PutU32At(std::span<std::uint8_t> block, std::size_t offset, std::uint32_t value);

// True when `block` begins with the bytes of `tag`.
bool StartsWith(Bytes block, std::string_view tag);

// 32-bit wrapping sum of the big-endian words of `block`; bytes that its last word lacks count as zero.
std::uint32_t SumBigEndianWords(Bytes block);

// Four ASCII characters as the 32-bit code that resource types, file types and sfnt tags use.
constexpr std::uint32_t FourCharCode(const char (&text)[5]) {
  std::uint32_t code = 0;
  for (int i = 0; i < 4; ++i) code = code * 256u + static_cast<unsigned char>(text[i]);
  return code;
}

inline Bytes AsBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
inline std::string_view AsText(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace quillmark

#endif
