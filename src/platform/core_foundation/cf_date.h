// The one text form that dates have in a property list.
// Tests: tests/platform/core_foundation_test.cc, property_list_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DATE_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DATE_H_

#include <optional>
#include <string>
#include <string_view>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark::cf {

// YYYY-MM-DDThh:mm:ssZ, a fraction of a second cut off. Nothing for a time outside the years 0000 to 9999,
// which the form cannot hold.
std::optional<std::string> DateText(CFAbsoluteTime time);

// The time that exactly such a text states, nothing for any other text. A month, day or hour past its end
// rolls over into the next, also out of the years that DateText can write.
std::optional<CFAbsoluteTime> ParseDateText(std::string_view text);

}  // namespace quillmark::cf

#endif
