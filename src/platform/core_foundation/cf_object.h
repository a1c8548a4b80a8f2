// The reference-counted object behind every CoreFoundation-shaped reference, and the count of those alive.
// A reference handed out as an opaque pointer is always the address of the Object base.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_OBJECT_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_OBJECT_H_

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace quillmark::cf {

enum class Type : std::uint32_t {
  kString = 1,
  kData,
  kNumber,
  kBoolean,
  kDate,
  kArray,
  kDictionary,
  kUrl,
  kBundle
};

class Object {
 public:
  constexpr explicit Object(Type type) : type_(type) {
    if (!std::is_constant_evaluated()) CountOne();
  }
  // Runs also when the constructor of the derived object throws.
  constexpr virtual ~Object() {
    if (!std::is_constant_evaluated()) UncountOne();
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  Type type() const { return type_; }
  void Retain() const;
  void Release() const;  // destroys the object with the last reference

  // Takes the object out of the count below: it lives as long as the process.
  void MakeProcessLong();

  // Objects that were made and not released to the last, for tests that look for leaks. Constants of the
  // program do not count.
  static std::int64_t LiveCount();

 private:
  static void CountOne();
  static void UncountOne();

  const Type type_;
  mutable std::atomic<std::uint32_t> references_{1};
};

}  // namespace quillmark::cf

#endif
