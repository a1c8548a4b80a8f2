// The values that property-list text writes between two tags: numbers, data, and the characters that an
// entity stands for. Tests: tests/platform/property_list_test.cc.
#ifndef QUILLMARK_PLATFORM_PROPERTY_LIST_PLIST_LEAVES_H_
#define QUILLMARK_PLATFORM_PROPERTY_LIST_PLIST_LEAVES_H_

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "platform/core_foundation/cf_object.h"

namespace quillmark::cf {

// What may stand between elements. (The members of string_view that look for one of a set call a function for
// each character.)
constexpr bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr std::string_view WithoutLeadingBlanks(std::string_view text) {
  return {std::find_if_not(text.begin(), text.end(), IsBlank), text.end()};
}

// Blanks, a sign, blanks, decimal digits or 0x and hexadecimal ones, nothing after; from -2^63 to 2^64 - 1.
std::optional<CFNumberObject::Value> ParseInteger(std::string_view text);
// Blanks, a sign, and a decimal number, nan, inf or infinity in any case, nothing after. What is too large
// is infinity.
std::optional<double> ParseReal(std::string_view text);
// Base 64. Characters outside its alphabet are passed over, and a last group of fewer than four is dropped.
std::string ParseData(std::string_view text);
// The UTF-8 form of the entity whose name stands between & and ;.
std::optional<std::string> ParseEntity(std::string_view name);

}  // namespace quillmark::cf

#endif
