#include "platform/cf_string.h"

#include <algorithm>

void CFStringObject::Assign(std::u16string text) {
  units_ = std::move(text);
  is_ascii_ =
      std::all_of(units_.begin(), units_.end(), [](char16_t unit) { return unit != 0 && unit < 0x80; });
  ascii_ = is_ascii_ ? std::string(units_.begin(), units_.end()) : std::string();
}
