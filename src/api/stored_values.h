// What the two stored forms (XML and property list) hold of a face: the values that both write, the fields
// that both read back, and how a number stands as text. Tests: tests/api/stored_forms_test.cc.
#ifndef QUILLMARK_API_STORED_VALUES_H_
#define QUILLMARK_API_STORED_VALUES_H_

#include <array>
#include <cstdint>
#include <string>

#include "api/font_specifier.h"
#include "quillmark/quillmark.h"

namespace quillmark {

// A value under the name of its tag or key.
struct StoredValue {
  const char* name;
  std::string text;
};
// The values of a face, in the order of the XML form. A text is what its getter copies into 512 bytes: at
// most 511, possibly cut inside a character. An attribute that is not held gives an empty text, or 0.
std::array<StoredValue, 9> StoredValues(const QM_FontArray* array, std::uint32_t index);

// The field that a number is read into, and the attribute that it sets, as StoredText (font_specifier.h).
struct StoredNumber {
  const char* name;
  int base;
  std::uint32_t attribute;
  std::uint32_t QM_FontSpecifier::*field;
};
inline constexpr StoredNumber kStoredNumbers[] = {
    {"KerningChecksum", 16, QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum},
    {"Checksum", 16, QM_ATTRIBUTE_CHECKSUM, &QM_FontSpecifier::checksum},
    {"OutlineFileSize", 10, QM_ATTRIBUTE_OUTLINE_FILE_SIZE, &QM_FontSpecifier::outlineFileSize},
};

// A face without attributes, as reading begins: its IDs are not stored.
QM_FontSpecifier NewStoredFace();

// The C library's conversion to a signed long of 32 bits, stored as an unsigned number: blanks and a sign are
// taken, "0x" in base 16, what follows the digits is ignored, and what does not fit saturates. So checksums
// above 7FFFFFFF read as 7FFFFFFF: hosts compare stored texts and rely on it.
std::uint32_t ParseLong(const char* text, int base);

}  // namespace quillmark

#endif
