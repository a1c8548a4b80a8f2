// Builds the data of a FOND resource: header, font association table, then the kerning table and the style
// mapping table when anything was put into them. Layout: "Inside Macintosh: Text", The Font Family Resource.
//   std::string fond = FondBuilder(128).Association(0, 0, 128).StyleString("Times-Roman").Build();
#ifndef QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_FOND_BUILDER_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
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

  FondBuilder& Association(std::int16_t size, std::int16_t style, std::int16_t resource_id);
  // Stores this as "number of entries minus 1", whatever was added.
  FondBuilder& StoredAssociationCount(std::int16_t count_minus_1);
  FondBuilder& International(std::int16_t word_1, std::int16_t word_2);

  FondBuilder& Kerning(std::int16_t style, std::vector<KerningPair> pairs);
  FondBuilder& StoredKerningCount(std::int16_t count_minus_1);

  // Appends a string of the style mapping table; the first is the base PostScript name. A suffix list is a
  // string of string numbers, as in StyleString("\x02\x04").
  FondBuilder& StyleString(std::string text);
  // Makes style index 0 to 47 point at a string, from 1. Without a call it is 1.
  FondBuilder& StyleIndex(std::size_t index, std::uint8_t string_number);

 protected:
  std::string Lay() const override;

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
  static constexpr std::array<std::uint8_t, 48> AllBase() {
    std::array<std::uint8_t, 48> indexes = {};
    for (auto& index : indexes) index = 1;
    return indexes;
  }

  std::int16_t family_id_;
  std::int16_t international_1_ = 0;
  std::int16_t international_2_ = 0;
  std::vector<AssociationEntry> associations_;
  std::optional<std::int16_t> stored_association_count_;
  std::vector<KerningSubtable> kerning_;
  std::optional<std::int16_t> stored_kerning_count_;
  std::vector<std::string> style_strings_;
  std::array<std::uint8_t, 48> style_indexes_ = AllBase();
};

}  // namespace quillmark

#endif
