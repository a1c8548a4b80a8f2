#include "builders/spoilable_builder.h"

#include <stdexcept>

namespace quillmark {

BigEndianWriter& BigEndianWriter::Text(std::string_view text) {
  bytes_.append(text);
  return *this;
}

BigEndianWriter& BigEndianWriter::Zeros(std::size_t count) {
  bytes_.append(count, '\0');
  return *this;
}

void SpoilableBuilder::Set(std::size_t offset, std::uint32_t value, int width) {
  spoils_.push_back([=](std::string& built) {
    if (offset + static_cast<std::size_t>(width) > built.size())
      throw std::out_of_range("nothing to overwrite");
    built.replace(offset, static_cast<std::size_t>(width), big_endian::Field(value, width));
  });
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
