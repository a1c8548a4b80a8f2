#include <cmath>
#include <limits>
#include <type_traits>

#include "platform/core_foundation/cf_object.h"

namespace {

// 2^digits of T as a double: the first value past T's range, exact for every integer type.
template <typename T>
double PastLargest() {
  return std::ldexp(1.0, std::numeric_limits<T>::digits);
}

// An integer is stored by its low bits. It counts as T's own up to T's maximum, but for the two small types
// up to the unsigned one: the platform lets a byte or a short come out negative without calling it a loss.
template <typename T>
bool StoreInteger(std::int64_t value, T& out) {
  using Largest = std::conditional_t<sizeof(T) < sizeof(std::int32_t), std::make_unsigned_t<T>, T>;
  out = static_cast<T>(value);
  return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<Largest>::max();
}

template <typename T>
bool StoreInteger(std::uint64_t value, T& out) {
  out = static_cast<T>(value);
  return sizeof(T) == sizeof(std::int64_t);
}

// A real is stored without its fraction, or as the nearest end of T's range, or as 0 for no number.
template <typename T>
bool StoreInteger(double value, T& out) {
  const auto smallest = static_cast<double>(std::numeric_limits<T>::min());
  if (std::isnan(value)) {
    out = 0;
  } else if (value < smallest) {
    out = std::numeric_limits<T>::min();
  } else if (value >= PastLargest<T>()) {
    out = std::numeric_limits<T>::max();
  } else {
    out = static_cast<T>(value);
    return std::trunc(value) == value;
  }
  return false;
}

template <typename T, typename Exact>
bool StoreReal(Exact exact, T& out) {
  out = static_cast<T>(exact);
  if constexpr (std::is_same_v<Exact, T>) {
    return true;
  } else if constexpr (std::is_integral_v<Exact>) {
    // The largest integers round up to a value past their type, which cannot be converted back.
    return static_cast<double>(out) < PastLargest<Exact>() && static_cast<Exact>(out) == exact;
  } else {
    return static_cast<Exact>(out) == exact;
  }
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
    using Kept = std::conditional_t<std::is_integral_v<decltype(zero)>, std::int64_t, double>;
    return new CFNumberObject(Kept{*static_cast<const decltype(zero)*>(value)});
  });
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  return WithType<Boolean>(type, [&](auto zero) {
    using T = decltype(zero);
    const auto store = [out = static_cast<T*>(value)](auto exact) {
      if constexpr (std::is_integral_v<T>)
        return StoreInteger(exact, *out);
      else
        return StoreReal(exact, *out);
    };
    return std::visit(store, number->value);
  });
}
