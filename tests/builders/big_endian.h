// Big-endian fields in byte strings that tests build and spoil, and what builders of binary files share.
#ifndef QUILLMARK_TESTS_BUILDERS_BIG_ENDIAN_H_
#define QUILLMARK_TESTS_BUILDERS_BIG_ENDIAN_H_

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::big_endian {

// The low bytes of the value.
inline std::string Field(std::uint64_t value, int size) {
  std::string bytes;
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFFu);
  return bytes;
}
inline std::string U16(std::uint64_t value) { return Field(value, 2); }
inline std::string U32(std::uint64_t value) { return Field(value, 4); }

// Replace a field; an offset outside the bytes throws.
inline void Set16(std::string& bytes, std::size_t offset, std::uint32_t value) {
  bytes.replace(offset, 2, U16(value));
}
inline void Set32(std::string& bytes, std::size_t offset, std::uint32_t value) {
  bytes.replace(offset, 4, U32(value));
}

// The text as UTF-16, as Unicode and Windows name records hold it.
inline std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += U16(unit);
  return bytes;
}

}  // namespace quillmark::big_endian

namespace quillmark {

// Appends big-endian values, of which it takes the low bytes, to a string.
class BigEndianWriter {
 public:
  BigEndianWriter& U8(std::uint64_t value) { return Text(big_endian::Field(value, 1)); }
  BigEndianWriter& U16(std::uint64_t value) { return Text(big_endian::Field(value, 2)); }
  BigEndianWriter& U24(std::uint64_t value) { return Text(big_endian::Field(value, 3)); }
  BigEndianWriter& U32(std::uint64_t value) { return Text(big_endian::Field(value, 4)); }
  BigEndianWriter& I16(std::int16_t value) { return U16(static_cast<std::uint16_t>(value)); }
  BigEndianWriter& I16s(std::initializer_list<std::int16_t> values) {
    for (const std::int16_t value : values) I16(value);
    return *this;
  }
  BigEndianWriter& Text(std::string_view text) {
    bytes_ += text;
    return *this;
  }
  BigEndianWriter& Pascal(std::string_view text) { return U8(text.size()).Text(text); }
  BigEndianWriter& Zeros(std::size_t count) { return Text(std::string(count, '\0')); }

  std::size_t size() const { return bytes_.size(); }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

// Builds a file with verbs that spoil it: recorded, and done at every Build() in the order of their calls.
class SpoilableBuilder {
 public:
  virtual ~SpoilableBuilder() = default;

  // Overwrite bytes that the built file has at `offset`; std::out_of_range when it has none there.
  void SetU8(std::size_t offset, std::uint8_t value) { Set(offset, big_endian::Field(value, 1)); }
  void SetU16(std::size_t offset, std::uint16_t value) { Set(offset, big_endian::U16(value)); }
  void SetU32(std::size_t offset, std::uint32_t value) { Set(offset, big_endian::U32(value)); }
  void Truncate(std::size_t length) {
    spoils_.push_back([=](std::string& built) { built.resize(length); });
  }

  std::string Build() const {
    std::string built = Lay();
    for (const auto& spoil : spoils_) spoil(built);
    return built;
  }

 protected:
  virtual std::string Lay() const = 0;

 private:
  void Set(std::size_t offset, const std::string& bytes) {
    spoils_.push_back([=](std::string& built) {
      if (offset + bytes.size() > built.size()) throw std::out_of_range("nothing to overwrite");
      built.replace(offset, bytes.size(), bytes);
    });
  }
  std::vector<std::function<void(std::string&)>> spoils_;
};

}  // namespace quillmark

#endif
