// The data object behind CFDataRef: a block of bytes that never changes.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DATA_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DATA_H_

#include <string>
#include <utility>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/core_foundation.h"

struct CFDataObject final : quillmark::cf::Object {
  explicit CFDataObject(std::string content)
      : Object(quillmark::cf::Type::kData), bytes(std::move(content)) {}

  const std::string bytes;  // a string, as property-list text comes and goes in this form
};

#endif
