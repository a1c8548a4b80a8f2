#include "builders/fond_builder.h"

#include <utility>

namespace quillmark {
namespace {

std::int16_t CountMinus1(std::size_t count, std::optional<std::int16_t> stored) {
  return stored.value_or(static_cast<std::int16_t>(static_cast<int>(count) - 1));
}

}  // namespace

FondBuilder& FondBuilder::Association(std::int16_t size, std::int16_t style, std::int16_t resource_id) {
  associations_.push_back({size, style, resource_id});
  return *this;
}

FondBuilder& FondBuilder::StoredAssociationCount(std::int16_t count_minus_1) {
  stored_association_count_ = count_minus_1;
  return *this;
}

FondBuilder& FondBuilder::International(std::int16_t word_1, std::int16_t word_2) {
  international_1_ = word_1;
  international_2_ = word_2;
  return *this;
}

FondBuilder& FondBuilder::Kerning(std::int16_t style, std::vector<KerningPair> pairs) {
  kerning_.push_back({style, std::move(pairs)});
  return *this;
}

FondBuilder& FondBuilder::StoredKerningCount(std::int16_t count_minus_1) {
  stored_kerning_count_ = count_minus_1;
  return *this;
}

FondBuilder& FondBuilder::StyleString(std::string text) {
  style_strings_.push_back(std::move(text));
  return *this;
}

FondBuilder& FondBuilder::StyleIndex(std::size_t index, std::uint8_t string_number) {
  style_indexes_.at(index) = string_number;
  return *this;
}

std::string FondBuilder::Lay() const {
  BigEndianWriter associations;
  associations.I16(CountMinus1(associations_.size(), stored_association_count_));
  for (const auto& entry : associations_)
    associations.I16(entry.size).I16(entry.style).I16(entry.resource_id);

  BigEndianWriter kerning;
  if (!kerning_.empty() || stored_kerning_count_) {
    kerning.I16(CountMinus1(kerning_.size(), stored_kerning_count_));
    for (const auto& table : kerning_) {
      kerning.I16(table.style).U16(static_cast<std::uint32_t>(table.pairs.size()));
      for (const auto& pair : table.pairs) kerning.U8(pair.first).U8(pair.second).I16(pair.value);
    }
  }

  BigEndianWriter styles;
  if (!style_strings_.empty()) {
    styles.Zeros(10);  // font class, glyph-encoding offset, reserved
    for (const std::uint8_t index : style_indexes_) styles.U8(index);
    styles.U16(static_cast<std::uint32_t>(style_strings_.size()));
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
