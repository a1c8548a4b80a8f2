#include "faces/version_order.h"

#include <algorithm>

namespace quillmark::tool {
namespace {

constexpr std::string_view kDigits = "0123456789";

// Takes the first run of digits off the front, without its leading zeros; empty for the number 0 and when
// there is none.
std::string_view TakeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_of(kDigits), text.size()));
  std::string_view number = text.substr(0, text.find_first_not_of(kDigits));
  text.remove_prefix(number.size());
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

}  // namespace

bool HasVersionNumber(std::string_view version) {
  return version.find_first_of(kDigits) != std::string_view::npos;
}

std::strong_ordering CompareVersions(std::string_view a, std::string_view b) {
  while (!a.empty() || !b.empty()) {
    const std::string_view number_a = TakeNumber(a);
    const std::string_view number_b = TakeNumber(b);
    // Without leading zeros the longer number is the larger.
    if (const auto order = number_a.size() <=> number_b.size(); std::is_neq(order)) return order;
    if (const auto order = number_a <=> number_b; std::is_neq(order)) return order;
  }
  return std::strong_ordering::equal;
}

std::string VersionKey(std::string_view version) {
  std::string key;
  while (!version.empty()) key.append(TakeNumber(version)).append(1, '.');
  key.resize(key.find_last_not_of('.') + 1);
  return key;
}

}  // namespace quillmark::tool
