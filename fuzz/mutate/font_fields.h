// Where the numbers lie that hold a font file together: counts, offsets and lengths of sfnt fonts,
// collections, resource maps, font families and AppleDouble files, each found through those before it.
#ifndef QUILLMARK_FUZZ_MUTATE_FONT_FIELDS_H_
#define QUILLMARK_FUZZ_MUTATE_FONT_FIELDS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace quillmark {

struct FontField {
  std::size_t offset;  // in the file
  int width;           // in bytes: 1, 2, 3 or 4
  int role;            // the same for all fields that mean the same, as the offsets of a table directory
};

// For sound files: lists that overlap would be followed over and over. Empty for bytes of no such form.
std::vector<FontField> FontFieldsOf(const std::string& bytes);

}  // namespace quillmark

#endif
