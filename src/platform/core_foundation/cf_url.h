// The URL object behind CFURLRef: a text, and the file-system path that it stands for.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_URL_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_URL_H_

#include <utility>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

struct CFURLObject final : quillmark::cf::Object {
  CFURLObject(quillmark::CFRef<CFStringRef> text, quillmark::CFRef<CFStringRef> file_path)
      : Object(quillmark::cf::Type::kUrl), string(std::move(text)), path(std::move(file_path)) {}

  const quillmark::CFRef<CFStringRef> string;
  const quillmark::CFRef<CFStringRef> path;
};

#endif
