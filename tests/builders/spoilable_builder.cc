#include "builders/spoilable_builder.h"

#include <stdexcept>
#include <utility>

namespace quillmark {

BigEndianWriter& BigEndianWriter::Put(std::uint32_t value, int width) {
  for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
    bytes_.push_back(static_cast<char>((value >> shift) & 0xFFu));
  }
  return *this;
}

BigEndianWriter& BigEndianWriter::Text(std::string_view text) {
  bytes_.append(text);
  return *this;
}

BigEndianWriter& BigEndianWriter::Pascal(std::string_view text) {
  return U8(static_cast<std::uint32_t>(text.size())).Text(text);
}

BigEndianWriter& BigEndianWriter::Zeros(std::size_t count) {
  bytes_.append(count, '\0');
  return *this;
}

void SpoilableBuilder::Overwrite(std::size_t offset, std::string bytes) {
  spoils_.push_back([offset, bytes = std::move(bytes)](std::string& built) {
    if (offset > built.size() || bytes.size() > built.size() - offset) {
      throw std::out_of_range("nothing to overwrite");
    }
    built.replace(offset, bytes.size(), bytes);
  });
}

void SpoilableBuilder::SetU8(std::size_t offset, std::uint8_t value) {
  Overwrite(offset, BigEndianWriter().U8(value).bytes());
}
void SpoilableBuilder::SetU16(std::size_t offset, std::uint16_t value) {
  Overwrite(offset, BigEndianWriter().U16(value).bytes());
}
void SpoilableBuilder::SetU32(std::size_t offset, std::uint32_t value) {
  Overwrite(offset, BigEndianWriter().U32(value).bytes());
}
void SpoilableBuilder::Truncate(std::size_t length) {
  spoils_.push_back([length](std::string& built) { built.resize(length); });
}

std::string SpoilableBuilder::Build() const {
  std::string built = Lay();
  for (const auto& spoil : spoils_) spoil(built);
  return built;
}

}  // namespace quillmark
