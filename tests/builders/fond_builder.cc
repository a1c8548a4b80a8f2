#include "builders/fond_builder.h"

namespace quillmark {

std::string FondBuilder::Lay() const {
  BigEndianWriter associations;
  associations.I16(stored_association_count_.value_or(static_cast<std::int16_t>(associations_.size()) - 1));
  for (const auto& entry : associations_)
    associations.I16(entry.size).I16(entry.style).I16(entry.resource_id);

  BigEndianWriter kerning;
  if (!kerning_.empty()) {
    kerning.U16(static_cast<std::uint32_t>(kerning_.size()) - 1);
    for (const auto& table : kerning_) {
      kerning.I16(table.style).U16(static_cast<std::uint32_t>(table.pairs.size()));
      for (const auto& pair : table.pairs) kerning.U8(pair.first).U8(pair.second).I16(pair.value);
    }
  }

  BigEndianWriter styles;
  if (!style_strings_.empty()) {
    styles.Zeros(10);  // font class, glyph-encoding offset, reserved
    styles.Text(style_indexes_).U16(static_cast<std::uint32_t>(style_strings_.size()));
    for (const std::string& text : style_strings_) styles.Pascal(text);
  }

  const std::size_t kerning_offset = 52 + associations.size();
  const std::size_t styles_offset = kerning_offset + kerning.size();
  BigEndianWriter fond;
  fond.U16(0).I16(family_id_).Zeros(12).U32(0);  // flags, ID, metrics, width table
  fond.U32(kerning.size() == 0 ? 0 : static_cast<std::uint32_t>(kerning_offset));
  fond.U32(styles.size() == 0 ? 0 : static_cast<std::uint32_t>(styles_offset));
  fond.Zeros(18).I16(international_1_).I16(international_2_).U16(2);
  return fond.bytes() + associations.bytes() + kerning.bytes() + styles.bytes();
}

}  // namespace quillmark
