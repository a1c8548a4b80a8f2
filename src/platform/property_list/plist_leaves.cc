#include "platform/property_list/plist_leaves.h"

#include <locale.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>

#include "platform/text/ascii_case.h"
#include "platform/text/text_encoding.h"
#include "platform/text/utf16.h"

namespace quillmark::cf {
namespace {

void SkipBlanks(std::string_view& text) { text = WithoutLeadingBlanks(text); }

// Takes one + or - from the front; true for -.
bool TakeSign(std::string_view& text) {
  const bool is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  return is_negative;
}

// The whole of `text` as digits of `base`; nothing when it is empty, holds anything else or passes 64 bits.
std::optional<std::uint64_t> ParseDigits(std::string_view text, int base) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower_case) {
  return std::equal(text.begin(), text.end(), lower_case.begin(), lower_case.end(),
                    [](char a, char b) { return ToLowerAscii(a) == b; });
}

// strtod with the decimal point of no locale, as the host may have set another.
double DecimalValue(const std::string& text, std::size_t* used) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  const double value = strtod_l(text.c_str(), &end, plain);
  *used = static_cast<std::size_t>(end - text.c_str());
  return value;
}

constexpr std::uint8_t kNoDigit = 0xFF;

// Values of the base 64 alphabet by character. The padding sign has the value 0 and a place in its group.
constexpr std::array<std::uint8_t, 256> kBase64Values = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  std::uint8_t value = 0;
  for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")) {
    values[static_cast<unsigned char>(c)] = value++;
  }
  values['='] = 0;
  return values;
}();

}  // namespace

std::optional<CFNumberObject::Value> ParseInteger(std::string_view text) {
  constexpr std::uint64_t kPastSigned = std::uint64_t{1} << 63;
  SkipBlanks(text);
  const bool is_negative = TakeSign(text);
  SkipBlanks(text);
  const bool is_hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (is_hexadecimal) text.remove_prefix(2);
  const auto magnitude = ParseDigits(text, is_hexadecimal ? 16 : 10);
  if (!magnitude || (is_negative && *magnitude > kPastSigned)) return std::nullopt;
  if (is_negative) return static_cast<std::int64_t>(-*magnitude);
  if (*magnitude >= kPastSigned) return *magnitude;
  return static_cast<std::int64_t>(*magnitude);
}

std::optional<double> ParseReal(std::string_view text) {
  SkipBlanks(text);
  const bool is_negative = TakeSign(text);
  const double sign = is_negative ? -1.0 : 1.0;
  if (EqualsIgnoringCase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
  if (EqualsIgnoringCase(text, "inf") || EqualsIgnoringCase(text, "infinity")) {
    return sign * std::numeric_limits<double>::infinity();
  }
  // strtod takes more than numbers have here: hexadecimal, blanks, a second sign.
  if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
  if (text.empty() || text.front() == '+' || text.front() == '-') return std::nullopt;
  std::size_t used = 0;
  const double value = DecimalValue(std::string(text), &used);
  if (used != text.size()) return std::nullopt;
  return sign * value;
}

std::string ParseData(std::string_view text) {
  std::string bytes;
  std::uint32_t bits = 0;
  std::size_t digits = 0;   // in this group
  std::size_t padding = 0;  // padding signs at the end of this group
  for (const char c : text) {
    const std::uint8_t value = kBase64Values[static_cast<unsigned char>(c)];
    if (value == kNoDigit) continue;
    bits = bits * 64u + value;
    padding = c == '=' ? padding + 1 : 0;
    if (++digits < 4) continue;
    bytes += static_cast<char>(bits / 0x10000u % 0x100u);
    if (padding < 2) bytes += static_cast<char>(bits / 0x100u % 0x100u);
    if (padding < 1) bytes += static_cast<char>(bits % 0x100u);
    bits = 0;
    digits = padding = 0;
  }
  return bytes;
}

std::optional<std::string> ParseEntity(std::string_view name) {
  constexpr std::pair<std::string_view, const char*> kNamed[] = {
      {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
  constexpr std::size_t kMostDigits = 8;
  for (const auto& [known, text] : kNamed) {
    if (name == known) return text;
  }
  if (!name.starts_with('#')) return std::nullopt;
  name.remove_prefix(1);
  const bool is_hexadecimal = name.starts_with('x');
  if (is_hexadecimal) name.remove_prefix(1);
  if (name.size() > kMostDigits) return std::nullopt;
  const auto character = ParseDigits(name, is_hexadecimal ? 16 : 10);
  if (!character || *character > 0x10FFFF) return std::nullopt;
  std::u16string units;
  AppendCharacter(units, static_cast<char32_t>(*character));
  return Utf16ToUtf8(units);  // nothing for a surrogate
}

}  // namespace quillmark::cf
