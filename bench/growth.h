// How cost grows: the same work at growing sizes, told as the cost of one unit and as its ratio to that of
// the size before. A ratio of about 1, or less while fixed costs wear off, is linear growth; work that grows
// with the square shows as the factor between the sizes.
#ifndef QUILLMARK_BENCH_GROWTH_H_
#define QUILLMARK_BENCH_GROWTH_H_

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include "bench/measure.h"

namespace quillmark::bench {

class GrowthTable {
 public:
  explicit GrowthTable(int rounds) : rounds_(rounds) {
    std::printf("| what grows | size | found | ns for each | to the size before |\n|---|--:|--:|--:|--:|\n");
  }

  // A row: what `run` costs a unit of `size`, and what it found. Rows of one `what` follow each other.
  void Row(const std::string& what, std::int64_t size, const std::string& unit,
           const std::function<std::uint32_t()>& run) {
    std::uint32_t found = 0;
    int repeats = 1;  // a round takes long enough to be timed
    const auto round = [&] {
      for (int i = 0; i < repeats; ++i) found = run();
    };
    round();
    while (Seconds(round) < kShortestRound && rounds_ > 1) repeats *= 2;
    const double cost = Turns(rounds_, {round}).MedianOf(0) / repeats / static_cast<double>(size) * 1e9;
    const std::string ratio = what == last_what_ ? Ratio(cost / last_cost_) : "";
    std::printf("| %s | %lld %s | %u | %.2f | %s |\n", what.c_str(), static_cast<long long>(size),
                unit.c_str(), found, cost, ratio.c_str());
    std::fflush(stdout);
    last_what_ = what;
    last_cost_ = cost;
  }

 private:
  static constexpr double kShortestRound = 0.02;

  static std::string Ratio(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
  }

  int rounds_;
  std::string last_what_;
  double last_cost_ = 0;
};

}  // namespace quillmark::bench

#endif
