// The array object behind CFArrayRef. Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_ARRAY_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_ARRAY_H_

#include <vector>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

struct CFArrayObject final : quillmark::cf::Object {
  CFArrayObject() : Object(quillmark::cf::Type::kArray) {}

  std::vector<quillmark::CFRef<CFTypeRef>> values;
};

#endif
