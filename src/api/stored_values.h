// Converts values for the two stored forms (XML and property list): from the getters to text, and from text
// to numbers. Tests: tests/api/xml_test.cc, property_list_form_test.cc.
#ifndef QUILLMARK_API_STORED_VALUES_H_
#define QUILLMARK_API_STORED_VALUES_H_

#include <cstdint>
#include <string>

#include "quillmark/quillmark.h"

namespace quillmark {

using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
using NumberGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, std::uint32_t*);

// What the getter copies into 512 bytes: at most 511, possibly cut inside a character. Empty when the
// attribute is not held.
std::string StoredText(TextGetter getter, const QM_FontArray* array, std::uint32_t index);
// What the getter gives, or `absent` when the attribute is not held.
std::uint32_t StoredNumber(NumberGetter getter, const QM_FontArray* array, std::uint32_t index,
                           std::uint32_t absent = 0);

std::string Hexadecimal(std::uint32_t value);    // eight digits, upper case
std::string SignedDecimal(std::uint32_t value);  // the value's bits as a signed number

// The C library's conversion to a signed long of 32 bits, stored as an unsigned number: blanks and a sign are
// taken, "0x" in base 16, what follows the digits is ignored, and what does not fit saturates. So checksums
// above 7FFFFFFF read as 7FFFFFFF: hosts compare stored texts and rely on it.
std::uint32_t ParseLong(const char* text, int base);

}  // namespace quillmark

#endif
