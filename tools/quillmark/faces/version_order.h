// Compares version numbers.
#ifndef QUILLMARK_TOOL_FACES_VERSION_ORDER_H_
#define QUILLMARK_TOOL_FACES_VERSION_ORDER_H_

#include <compare>
#include <string>
#include <string_view>

namespace quillmark::tool {

// False for a text without a digit, which is no version.
bool HasVersionNumber(std::string_view version);

// Compares the runs of digits one by one as numbers, of any length; a missing one is 0. So 2.10 is newer than
// 2.9, and 001.005 is 1.5.
std::strong_ordering CompareVersions(std::string_view a, std::string_view b);

// Equal texts for versions that compare equal, and for no others.
std::string VersionKey(std::string_view version);

}  // namespace quillmark::tool

#endif
