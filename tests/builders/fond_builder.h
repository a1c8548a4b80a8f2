// Builds the data of a FOND resource: header, font association table, then the kerning table and the style
// mapping table when anything was put into them. Layout: "Inside Macintosh: Text", The Font Family Resource.
//   std::string fond = FondBuilder(128).Association(0, 0, 128).StyleString("Times-Roman").Build();
#ifndef QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_

#include <optional>

#include "builders/big_endian.h"

namespace quillmark {

class FondBuilder : public SpoilableBuilder {
 public:
  struct KerningPair {
    std::uint8_t first;
    std::uint8_t second;
    std::int16_t value;
  };

  explicit FondBuilder(std::int16_t family_id) : family_id_(family_id) {}

  FondBuilder& Association(std::int16_t size, std::int16_t style, std::int16_t resource_id) {
    associations_.I16s({size, style, resource_id});
    return *this;
  }
  // Stores this as "number of entries minus 1", whatever was added.
  FondBuilder& StoredAssociationCount(std::int16_t count_minus_1) {
    stored_association_count_ = count_minus_1;
    return *this;
  }
  FondBuilder& International(std::int16_t word_1, std::int16_t word_2) {
    international_ = BigEndianWriter().I16s({word_1, word_2}).bytes();
    return *this;
  }

  FondBuilder& Kerning(std::int16_t style, const std::vector<KerningPair>& pairs) {
    kerning_.I16(style).U16(pairs.size());
    for (const KerningPair& pair : pairs) kerning_.U8(pair.first).U8(pair.second).I16(pair.value);
    ++kerning_count_;
    return *this;
  }

  // Appends a string of the style mapping table; the first is the base PostScript name. A suffix list is a
  // string of string numbers, as in StyleString("\x02\x04").
  FondBuilder& StyleString(std::string_view text) {
    style_strings_.Pascal(text);
    ++style_string_count_;
    return *this;
  }
  // Makes style index 0 to 47 point at a string, from 1. Without a call it is 1.
  FondBuilder& StyleIndex(std::size_t index, std::uint8_t string_number) {
    style_indexes_.at(index) = static_cast<char>(string_number);
    return *this;
  }

 protected:
  std::string Lay() const override {
    const auto entries = static_cast<std::int16_t>(associations_.size() / 6);
    BigEndianWriter kerning;
    if (kerning_count_ > 0) kerning.U16(kerning_count_ - 1).Text(kerning_.bytes());
    const std::size_t kerning_offset = 54 + associations_.size();
    const std::size_t styles_offset = kerning_offset + kerning.size();

    BigEndianWriter fond;
    fond.U16(0).I16(family_id_).Zeros(16);  // flags, ID, metrics, width table
    fond.U32(kerning_count_ > 0 ? kerning_offset : 0).U32(style_string_count_ > 0 ? styles_offset : 0);
    fond.Zeros(18).Text(international_).U16(2);
    fond.I16(stored_association_count_.value_or(entries - 1)).Text(associations_.bytes());
    fond.Text(kerning.bytes());
    if (style_string_count_ > 0) {
      fond.Zeros(10);  // font class, glyph-encoding offset, reserved
      fond.Text(style_indexes_).U16(style_string_count_).Text(style_strings_.bytes());
    }
    return fond.bytes();
  }

 private:
  std::int16_t family_id_;
  std::string international_ = std::string(4, '\0');
  BigEndianWriter associations_;
  std::optional<std::int16_t> stored_association_count_;
  BigEndianWriter kerning_;
  std::size_t kerning_count_ = 0;
  BigEndianWriter style_strings_;
  std::size_t style_string_count_ = 0;
  std::string style_indexes_ = std::string(48, 1);
};

}  // namespace quillmark

#endif
