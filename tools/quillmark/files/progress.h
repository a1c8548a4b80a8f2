// Progress: a line on standard error that shows how many files are done, how fast, and the time left.
#ifndef QUILLMARK_TOOL_FILES_PROGRESS_H_
#define QUILLMARK_TOOL_FILES_PROGRESS_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace quillmark::tool {

class Progress {
 public:
  using Total = std::function<std::optional<std::size_t>()>;

  // `total` gives the number of files in all, once that is known.
  Progress(bool shown, Total total);
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // One more file is done. Draws at most ten times a second.
  void Advance();
  // Takes the line off the terminal, so that another can be written there.
  void Clear();

  std::size_t done() const { return done_; }

 private:
  using Clock = std::chrono::steady_clock;

  std::string Text(Clock::time_point time) const;

  const bool shown_;
  const Total total_;
  const Clock::time_point begin_ = Clock::now();
  Clock::time_point drawn_ = begin_;
  std::size_t done_ = 0;
  std::size_t width_ = 0;  // of the line on the terminal
};

}  // namespace quillmark::tool

#endif
