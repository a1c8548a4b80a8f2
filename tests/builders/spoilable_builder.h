// What builders of binary files share: big-endian writing, and verbs that spoil the built bytes.
// Spoiling is recorded and done at every Build(), in the order it was asked for.
#ifndef QUILLMARK_TESTS_BUILDERS_SPOILABLE_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_SPOILABLE_BUILDER_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "builders/big_endian.h"

namespace quillmark {

// Appends big-endian values to a string.
class BigEndianWriter {
 public:
  BigEndianWriter& U8(std::uint32_t value) { return Put(value, 1); }
  BigEndianWriter& U16(std::uint32_t value) { return Put(value, 2); }
  BigEndianWriter& U24(std::uint32_t value) { return Put(value, 3); }
  BigEndianWriter& U32(std::uint32_t value) { return Put(value, 4); }
  BigEndianWriter& I16(std::int16_t value) { return U16(static_cast<std::uint16_t>(value)); }
  BigEndianWriter& Text(std::string_view text);
  BigEndianWriter& Pascal(std::string_view text) {
    return U8(static_cast<std::uint32_t>(text.size())).Text(text);
  }
  BigEndianWriter& Zeros(std::size_t count);

  std::size_t size() const { return bytes_.size(); }
  const std::string& bytes() const { return bytes_; }

 private:
  BigEndianWriter& Put(std::uint32_t value, int width) { return Text(big_endian::Field(value, width)); }
  std::string bytes_;
};

class SpoilableBuilder {
 public:
  virtual ~SpoilableBuilder() = default;

  // Overwrite bytes that the built file has at `offset`; std::out_of_range when it has none there.
  void SetU8(std::size_t offset, std::uint8_t value) { Set(offset, value, 1); }
  void SetU16(std::size_t offset, std::uint16_t value) { Set(offset, value, 2); }
  void SetU32(std::size_t offset, std::uint32_t value) { Set(offset, value, 4); }
  void Truncate(std::size_t length);

  std::string Build() const;

 protected:
  virtual std::string Lay() const = 0;

 private:
  void Set(std::size_t offset, std::uint32_t value, int width);
  std::vector<std::function<void(std::string&)>> spoils_;
};

}  // namespace quillmark

#endif
