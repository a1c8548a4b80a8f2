// The string object behind CFStringRef: UTF-16 code units, and the text's bytes when it is ASCII.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_STRING_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_STRING_H_

#include <string>
#include <utility>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/core_foundation.h"

struct CFStringObject final : quillmark::cf::Object {
  explicit CFStringObject(std::u16string text) : Object(quillmark::cf::Type::kString) {
    Assign(std::move(text));
  }

  const std::u16string& units() const { return units_; }
  // The bytes of the text when it is ASCII without NUL, else null.
  const char* ascii() const { return is_ascii_ ? ascii_.c_str() : nullptr; }
  void Assign(std::u16string text);

 private:
  std::u16string units_;
  std::string ascii_;
  bool is_ascii_ = false;
};

#endif
