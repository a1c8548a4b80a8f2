// The number object behind CFNumberRef: an integer from -2^63 to 2^64 - 1, or a real.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_NUMBER_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_NUMBER_H_

#include <cstdint>
#include <variant>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/core_foundation.h"

struct CFNumberObject final : quillmark::cf::Object {
  // The unsigned alternative is for 2^63 and above only, so that every integer has one form.
  using Value = std::variant<std::int64_t, std::uint64_t, double>;

  explicit CFNumberObject(Value number) : Object(quillmark::cf::Type::kNumber), value(number) {}

  const Value value;
};

#endif
