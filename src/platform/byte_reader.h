// The one bounds-checked reader of file bytes: a forward cursor over a block, and reads at fixed offsets.
// Everything is big-endian, as sfnt, resource and AppleDouble structures are, except where a name says
// otherwise. No offset or length from a file is followed anywhere else. Spans returned point into the block
// that was given. Tests: tests/platform/byte_reader_test.cc.
#ifndef QUILLMARK_PLATFORM_BYTE_READER_H_
#define QUILLMARK_PLATFORM_BYTE_READER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace quillmark {

using Bytes = std::span<const std::uint8_t>;

// Big-endian value as it lies in memory, to the host's order.
std::uint32_t emdBigToHostU32(std::uint32_t value);
std::uint16_t emdBigToHostInt16(std::uint16_t value);

// A cursor that moves forward. A failed read changes nothing and returns no value.
class ByteReader {
 public:
  explicit ByteReader(Bytes bytes) : block_(bytes), rest_(bytes) {}

  [[nodiscard]] std::optional<std::uint8_t> U8();
  [[nodiscard]] std::optional<std::uint16_t> U16();
  [[nodiscard]] std::optional<std::int16_t> I16();
  [[nodiscard]] std::optional<std::uint32_t> U24();
  [[nodiscard]] std::optional<std::uint32_t> U32();
  [[nodiscard]] std::optional<Bytes> Take(std::size_t n);
  [[nodiscard]] bool Skip(std::size_t n);

  // A reader over [offset, offset + length) of the whole block, wherever this cursor stands.
  [[nodiscard]] std::optional<ByteReader> Sub(std::size_t offset, std::size_t length) const;

  std::size_t remaining() const { return rest_.size(); }

 private:
  Bytes block_;
  Bytes rest_;
};

// The bytes [offset, offset + length) of `block`, or nothing when they do not all lie inside it.
[[nodiscard]] std::optional<Bytes> Slice(Bytes block, std::size_t offset, std::size_t length);

// Fields at a fixed offset, for records that are read by offset. Nothing when the field passes the end.
[[nodiscard]] std::optional<std::uint8_t> U8At(Bytes block, std::size_t offset);
[[nodiscard]] std::optional<std::uint16_t> U16At(Bytes block, std::size_t offset);
[[nodiscard]] std::optional<std::int16_t> I16At(Bytes block, std::size_t offset);
[[nodiscard]] std::optional<std::uint32_t> U32At(Bytes block, std::size_t offset);
[[nodiscard]] std::optional<std::uint32_t> LittleU32At(Bytes block, std::size_t offset);  // Windows PFM
[[nodiscard]] std::optional<std::uint32_t> HostU32At(Bytes block, std::size_t offset);

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
