// Timing for the programs of this folder: what is compared runs in turns, so that a slow moment of the
// machine falls on all of it, and the median of the rounds counts. Tables are printed as Markdown.
#ifndef QUILLMARK_BENCH_MEASURE_H_
#define QUILLMARK_BENCH_MEASURE_H_

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <vector>

namespace quillmark::bench {

inline double Seconds(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// The seconds of each run in each round.
class Turns {
 public:
  // A first round is not counted: it brings files into the page cache and loads what is loaded once.
  Turns(int rounds, const std::vector<std::function<void()>>& runs) : seconds_(runs.size()) {
    for (int round = -1; round < rounds; ++round) {
      for (std::size_t i = 0; i < runs.size(); ++i) {
        const double seconds = Seconds(runs[i]);
        if (round >= 0) seconds_[i].push_back(seconds);
      }
    }
  }

  double MedianOf(std::size_t run) const { return Median(seconds_[run]); }
  // Median of the rounds' ratios of one run to another.
  double Ratio(std::size_t run, std::size_t to) const {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < seconds_[run].size(); ++i)
      ratios.push_back(seconds_[run][i] / seconds_[to][i]);
    return Median(ratios);
  }

 private:
  std::vector<std::vector<double>> seconds_;
};

}  // namespace quillmark::bench

#endif
