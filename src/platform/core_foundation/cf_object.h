// The reference-counted objects behind CoreFoundation-shaped references, and the count of those alive.
// A reference handed out as an opaque pointer is always the address of the Object base.
// Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_OBJECT_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_OBJECT_H_

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

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
    if (!std::is_constant_evaluated()) live_count_.fetch_add(1, std::memory_order_relaxed);
  }
  // Runs also when the constructor of the derived object throws.
  constexpr virtual ~Object() {
    if (!std::is_constant_evaluated()) live_count_.fetch_sub(1, std::memory_order_relaxed);
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  Type type() const { return type_; }
  void Retain() const { references_.fetch_add(1, std::memory_order_relaxed); }
  // Destroys the object with the last reference.
  void Release() const {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  // Takes the object out of the count below: it lives as long as the process.
  void MakeProcessLong() { live_count_.fetch_sub(1, std::memory_order_relaxed); }
  // Objects that were made and not released to the last, for tests that look for leaks. Constants of the
  // program do not count.
  static std::int64_t LiveCount() { return live_count_.load(std::memory_order_relaxed); }

 private:
  static inline std::atomic<std::int64_t> live_count_{0};
  const Type type_;
  mutable std::atomic<std::uint32_t> references_{1};
};

}  // namespace quillmark::cf

// UTF-16 code units, and the text's bytes when it is ASCII.
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

struct CFDataObject final : quillmark::cf::Object {
  explicit CFDataObject(std::string content)
      : Object(quillmark::cf::Type::kData), bytes(std::move(content)) {}

  const std::string bytes;  // a string, as property-list text comes and goes in this form
};

// An integer from -2^63 to 2^64 - 1, or a real.
struct CFNumberObject final : quillmark::cf::Object {
  // The unsigned alternative is for 2^63 and above only, so that every integer has one form.
  using Value = std::variant<std::int64_t, std::uint64_t, double>;
  explicit CFNumberObject(Value number) : Object(quillmark::cf::Type::kNumber), value(number) {}

  const Value value;
};

// There are two, kCFBooleanTrue and kCFBooleanFalse.
struct CFBooleanObject final : quillmark::cf::Object {
  constexpr explicit CFBooleanObject(bool truth) : Object(quillmark::cf::Type::kBoolean), value(truth) {}
  // NOLINTNEXTLINE(modernize-use-equals-default): GCC 12 takes no defaulted one in a constant
  constexpr ~CFBooleanObject() override {}

  const bool value;
};

// Dates occur in property lists only.
struct CFDateObject final : quillmark::cf::Object {
  explicit CFDateObject(CFAbsoluteTime at) : Object(quillmark::cf::Type::kDate), time(at) {}

  const CFAbsoluteTime time;
};

struct CFArrayObject final : quillmark::cf::Object {
  CFArrayObject() : Object(quillmark::cf::Type::kArray) {}

  std::vector<quillmark::CFRef<CFTypeRef>> values;
};

// Objects under string keys, in the order of the keys' UTF-16 code units, which is the order that
// property-list text wants. A tree, not a hash table; keys that come in order cost one comparison each.
struct CFDictionaryObject final : quillmark::cf::Object {
  CFDictionaryObject() : Object(quillmark::cf::Type::kDictionary) {}

  using Key = quillmark::CFRef<CFStringRef>;
  struct ByCodeUnits {
    using is_transparent = void;
    static const std::u16string& Units(const Key& key) { return key.get()->units(); }
    static const std::u16string& Units(CFStringRef key) { return key->units(); }
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      return Units(a) < Units(b);
    }
  };

  // Gives `key` the value, in place of any it has.
  void Set(Key key, quillmark::CFRef<CFTypeRef> value) {
    entries.insert_or_assign(entries.end(), std::move(key), std::move(value));
  }

  std::map<Key, quillmark::CFRef<CFTypeRef>, ByCodeUnits> entries;
};

#endif
