#include "api/stored_values.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace quillmark {

std::string StoredText(TextGetter getter, const QM_FontArray* array, std::uint32_t index) {
  char scratch[512] = {};
  (void)getter(array, index, scratch, sizeof(scratch));  // a failure leaves the text empty
  return scratch;
}

std::uint32_t StoredNumber(NumberGetter getter, const QM_FontArray* array, std::uint32_t index,
                           std::uint32_t absent) {
  std::uint32_t value = absent;
  (void)getter(array, index, &value);  // a failure leaves the value as it is
  return value;
}

std::string Hexadecimal(std::uint32_t value) {
  char digits[9];
  std::snprintf(digits, sizeof(digits), "%08" PRIX32, value);
  return digits;
}

std::string SignedDecimal(std::uint32_t value) { return std::to_string(static_cast<std::int32_t>(value)); }

std::uint32_t ParseLong(const char* text, int base) {
  using Limits = std::numeric_limits<std::int32_t>;
  const long long value =
      std::clamp<long long>(std::strtoll(text, nullptr, base), Limits::min(), Limits::max());
  return static_cast<std::uint32_t>(value);
}

}  // namespace quillmark
