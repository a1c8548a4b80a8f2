#include "files/progress.h"

#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <utility>

#include "text/terminal.h"
#include "text/terminal_guard.h"

namespace quillmark::tool {
namespace {

constexpr std::chrono::milliseconds kBetweenLines{100};

std::string Rounded(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), value < 10 ? "%.1f" : "%.0f", value);
  return text.data();
}

std::string Duration(double seconds) {
  constexpr double kMinute = 60;
  constexpr double kHour = 60 * kMinute;
  const auto count = [](double n) { return std::to_string(std::lround(n)); };
  if (seconds < 2 * kMinute) return count(seconds) + " s";
  return seconds < 2 * kHour ? count(seconds / kMinute) + " min" : count(seconds / kHour) + " h";
}

}  // namespace

Progress::Progress(bool shown, Total total) : shown_(shown), total_(std::move(total)) {}

std::string Progress::Text(Clock::time_point time) const {
  const double seconds = std::chrono::duration<double>(time - begin_).count();
  const double rate = static_cast<double>(done_) / seconds;
  const std::optional<std::size_t> total = total_();
  std::string text = std::to_string(done_);
  if (total) text += " of " + std::to_string(*total);
  text += (total.value_or(done_) == 1 ? " file, " : " files, ") + Rounded(rate) + " a second";
  if (total && *total >= done_) text += ", " + Duration(static_cast<double>(*total - done_) / rate) + " left";
  return text;
}

void Progress::Advance() {
  ++done_;
  if (!shown_) return;
  const Clock::time_point time = Clock::now();
  if (time - drawn_ < kBetweenLines) return;
  drawn_ = time;
  std::string text = Text(time);
  // A line that wraps could not be taken back.
  if (const std::size_t columns = TerminalColumns(STDERR_FILENO); columns > 0 && text.size() >= columns) {
    text.resize(columns - 1);
  }
  const std::size_t width = text.size();
  if (width < width_) text.append(width_ - width, ' ');
  WriteControls(std::cerr, '\r' + text);
  width_ = width;
}

void Progress::Clear() {
  if (width_ == 0) return;
  WriteControls(std::cerr, '\r' + std::string(width_, ' ') + '\r');
  width_ = 0;
}

}  // namespace quillmark::tool
