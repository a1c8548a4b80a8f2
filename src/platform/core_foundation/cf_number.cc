#include "platform/core_foundation/cf_number.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

template <typename T>
T Load(const void* value) {
  return *static_cast<const T*>(value);
}

template <typename T>
void Store(void* out, T value) {
  *static_cast<T*>(out) = value;
}

// 2^digits of T as a double: the first value past T's range, exact for every integer type.
template <typename T>
double PastLargest() {
  return std::ldexp(1.0, std::numeric_limits<T>::digits);
}

// An integer is stored by its low bits. It counts as T's own up to `largest`, which for the two small types
// is the unsigned maximum: the platform lets a byte or a short come out negative without calling it a loss.
template <typename T>
bool StoreInteger(std::int64_t value, std::int64_t largest, void* out) {
  Store(out, static_cast<T>(value));
  return value >= std::numeric_limits<T>::min() && value <= largest;
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
bool GetInteger(const CFNumberObject::Value& value, std::int64_t largest, void* out) {
  if (const auto* real = std::get_if<double>(&value)) return StoreTruncated<T>(*real, out);
  if (const auto* above = std::get_if<std::uint64_t>(&value)) {
    Store(out, static_cast<T>(*above));
    return sizeof(T) == sizeof(std::int64_t);
  }
  return StoreInteger<T>(std::get<std::int64_t>(value), largest, out);
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

}  // namespace

CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kNumber); }

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
  const auto integer = [](std::int64_t number) { return new CFNumberObject(number); };
  const auto real = [](double number) { return new CFNumberObject(number); };
  switch (type) {
    case kCFNumberSInt8Type:
    case kCFNumberCharType:
      return integer(Load<std::int8_t>(value));
    case kCFNumberSInt16Type:
    case kCFNumberShortType:
      return integer(Load<std::int16_t>(value));
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
    case kCFNumberLongType:
      return integer(Load<std::int32_t>(value));
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return integer(Load<std::int64_t>(value));
    case kCFNumberFloat32Type:
    case kCFNumberFloatType:
      return real(static_cast<double>(Load<float>(value)));
    case kCFNumberFloat64Type:
    case kCFNumberDoubleType:
      return real(Load<double>(value));
  }
  return nullptr;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  switch (type) {
    case kCFNumberSInt8Type:
    case kCFNumberCharType:
      return GetInteger<std::int8_t>(number->value, std::numeric_limits<std::uint8_t>::max(), value);
    case kCFNumberSInt16Type:
    case kCFNumberShortType:
      return GetInteger<std::int16_t>(number->value, std::numeric_limits<std::uint16_t>::max(), value);
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
    case kCFNumberLongType:
      return GetInteger<std::int32_t>(number->value, std::numeric_limits<std::int32_t>::max(), value);
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return GetInteger<std::int64_t>(number->value, std::numeric_limits<std::int64_t>::max(), value);
    case kCFNumberFloat32Type:
    case kCFNumberFloatType:
      return GetReal<float>(number->value, value);
    case kCFNumberFloat64Type:
    case kCFNumberDoubleType:
      return GetReal<double>(number->value, value);
  }
  return false;
}
