// The boolean object behind CFBooleanRef. There are two, kCFBooleanTrue and kCFBooleanFalse.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_BOOLEAN_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_BOOLEAN_H_

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/core_foundation.h"

struct CFBooleanObject final : quillmark::cf::Object {
  constexpr explicit CFBooleanObject(bool truth) : Object(quillmark::cf::Type::kBoolean), value(truth) {}
  // NOLINTNEXTLINE(modernize-use-equals-default): GCC 12 takes no defaulted one in a constant
  constexpr ~CFBooleanObject() override {}

  const bool value;
};

#endif
