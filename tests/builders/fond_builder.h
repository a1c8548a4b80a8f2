// Builds the data of a FOND resource: header, font association table, then the kerning table and the style
// mapping table when anything was put into them. Layout: "Inside Macintosh: Text", The Font Family Resource.
//   std::string fond = FondBuilder(128).Association(0, 0, 128).StyleString("Times-Roman").Build();
#ifndef QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "builders/spoilable_builder.h"

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
    associations_.push_back({size, style, resource_id});
    return *this;
  }
  // Stores this as "number of entries minus 1", whatever was added.
  FondBuilder& StoredAssociationCount(std::int16_t count_minus_1) {
    stored_association_count_ = count_minus_1;
    return *this;
  }
  FondBuilder& International(std::int16_t word_1, std::int16_t word_2) {
    international_1_ = word_1;
    international_2_ = word_2;
    return *this;
  }

  FondBuilder& Kerning(std::int16_t style, std::vector<KerningPair> pairs) {
    kerning_.push_back({style, std::move(pairs)});
    return *this;
  }

  // Appends a string of the style mapping table; the first is the base PostScript name. A suffix list is a
  // string of string numbers, as in StyleString("\x02\x04").
  FondBuilder& StyleString(std::string text) {
    style_strings_.push_back(std::move(text));
    return *this;
  }
  // Makes style index 0 to 47 point at a string, from 1. Without a call it is 1.
  FondBuilder& StyleIndex(std::size_t index, std::uint8_t string_number) {
    style_indexes_.at(index) = static_cast<char>(string_number);
    return *this;
  }

 protected:
  std::string Lay() const override {
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

 private:
  struct AssociationEntry {
    std::int16_t size;
    std::int16_t style;
    std::int16_t resource_id;
  };
  struct KerningSubtable {
    std::int16_t style;
    std::vector<KerningPair> pairs;
  };

  std::int16_t family_id_;
  std::int16_t international_1_ = 0;
  std::int16_t international_2_ = 0;
  std::vector<AssociationEntry> associations_;
  std::optional<std::int16_t> stored_association_count_;
  std::vector<KerningSubtable> kerning_;
  std::vector<std::string> style_strings_;
  std::string style_indexes_ = std::string(48, 1);
};

}  // namespace quillmark

#endif
