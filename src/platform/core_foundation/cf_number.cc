#include "platform/core_foundation/cf_number.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

template <typename T>
void Store(void* out, T value) {
  *static_cast<T*>(out) = value;
}

// 2^digits of T as a double: the first value past T's range, exact for every integer type.
template <typename T>
double PastLargest() {
  return std::ldexp(1.0, std::numeric_limits<T>::digits);
}

// An integer is stored by its low bits. It counts as T's own up to T's maximum, but for the two small types
// up to the unsigned one: the platform lets a byte or a short come out negative without calling it a loss.
template <typename T>
bool StoreInteger(std::int64_t value, void* out) {
  using Largest = std::conditional_t<sizeof(T) < sizeof(std::int32_t), std::make_unsigned_t<T>, T>;
  Store(out, static_cast<T>(value));
  return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<Largest>::max();
}

// A real is stored without its fraction, or as the nearest end of T's range, or as 0 for no number.
template <typename T>
bool StoreTruncated(double value, void* out) {
  const auto smallest = static_cast<double>(std::numeric_limits<T>::min());
  if (std::isnan(value)) {
    Store(out, T{0});
  } else if (value < smallest) {
    Store(out, std::numeric_limits<T>::min());
  } else if (value >= PastLargest<T>()) {
    Store(out, std::numeric_limits<T>::max());
  } else {
    Store(out, static_cast<T>(value));
    return std::trunc(value) == value;
  }
  return false;
}

template <typename T>
bool GetInteger(const CFNumberObject::Value& value, void* out) {
  if (const auto* real = std::get_if<double>(&value)) return StoreTruncated<T>(*real, out);
  if (const auto* above = std::get_if<std::uint64_t>(&value)) {
    Store(out, static_cast<T>(*above));
    return sizeof(T) == sizeof(std::int64_t);
  }
  return StoreInteger<T>(std::get<std::int64_t>(value), out);
}

template <typename T>
bool GetReal(const CFNumberObject::Value& value, void* out) {
  return std::visit(
      [out](auto exact) {
        using Exact = decltype(exact);
        const T real = static_cast<T>(exact);
        Store(out, real);
        if constexpr (std::is_same_v<Exact, T>) {
          return true;
        } else if constexpr (std::is_integral_v<Exact>) {
          // The largest integers round up to a value past their type, which cannot be converted back.
          return static_cast<double>(real) < PastLargest<Exact>() && static_cast<Exact>(real) == exact;
        } else {
          return static_cast<Exact>(real) == exact;
        }
      },
      value);
}

// Calls `use` with a zero of the C++ type that stands for `type`.
template <typename Result, typename Use>
Result WithType(CFNumberType type, Use use) {
  switch (type) {
    case kCFNumberSInt8Type:
    case kCFNumberCharType:
      return use(std::int8_t{});
    case kCFNumberSInt16Type:
    case kCFNumberShortType:
      return use(std::int16_t{});
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
    case kCFNumberLongType:
      return use(std::int32_t{});
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return use(std::int64_t{});
    case kCFNumberFloat32Type:
    case kCFNumberFloatType:
      return use(float{});
    case kCFNumberFloat64Type:
    case kCFNumberDoubleType:
      return use(double{});
  }
  return Result{};
}

}  // namespace

CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kNumber); }

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
  return WithType<CFNumberRef>(type, [&](auto zero) {
    const auto number = *static_cast<const decltype(zero)*>(value);
    if constexpr (std::is_integral_v<decltype(zero)>)
      return new CFNumberObject(std::int64_t{number});
    else
      return new CFNumberObject(double{number});
  });
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  return WithType<Boolean>(type, [&](auto zero) {
    using T = decltype(zero);
    if constexpr (std::is_integral_v<T>)
      return GetInteger<T>(number->value, value);
    else
      return GetReal<T>(number->value, value);
  });
}
