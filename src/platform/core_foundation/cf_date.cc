#include "platform/core_foundation/cf_date.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "platform/text/ascii_case.h"

namespace quillmark::cf {
namespace {

using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr sys_seconds kReference = sys_days{std::chrono::year{2001} / 1 / 1};
constexpr sys_seconds kFirst = sys_days{std::chrono::year{0} / 1 / 1};
constexpr sys_seconds kPastLast = sys_days{std::chrono::year{10000} / 1 / 1};

// Each 0 matches a digit, every other character itself.
constexpr std::string_view kForm = "0000-00-00T00:00:00Z";

int DigitsAt(std::string_view text, std::size_t begin, std::size_t count) {
  int value = 0;
  for (const char digit : text.substr(begin, count)) value = value * 10 + (digit - '0');
  return value;
}

bool HasForm(std::string_view text) {
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] == '0' ? !IsDigitAscii(text[i]) : text[i] != kForm[i]) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string> DateText(CFAbsoluteTime time) {
  const double whole = std::floor(time);
  const double first = static_cast<double>((kFirst - kReference).count());
  const double past_last = static_cast<double>((kPastLast - kReference).count());
  if (!(whole >= first && whole < past_last)) return std::nullopt;  // no number is neither

  const sys_seconds at = kReference + std::chrono::seconds(static_cast<std::int64_t>(whole));
  const auto midnight = std::chrono::floor<std::chrono::days>(at);
  const std::chrono::year_month_day day(midnight);
  const std::chrono::hh_mm_ss clock(at - midnight);
  const auto number = [](auto count) { return static_cast<unsigned>(count); };
  char text[80];
  std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02uZ", number(int{day.year()}),
                number(day.month()), number(day.day()), number(clock.hours().count()),
                number(clock.minutes().count()), number(clock.seconds().count()));
  return text;
}

std::optional<CFAbsoluteTime> ParseDateText(std::string_view text) {
  if (!HasForm(text)) return std::nullopt;
  const auto month = std::chrono::year{DigitsAt(text, 0, 4)} / std::chrono::January +
                     std::chrono::months(DigitsAt(text, 5, 2) - 1);
  const sys_seconds time = sys_days{month / 1} + std::chrono::days(DigitsAt(text, 8, 2) - 1) +
                           std::chrono::hours(DigitsAt(text, 11, 2)) +
                           std::chrono::minutes(DigitsAt(text, 14, 2)) +
                           std::chrono::seconds(DigitsAt(text, 17, 2));
  return static_cast<CFAbsoluteTime>((time - kReference).count());
}

}  // namespace quillmark::cf
