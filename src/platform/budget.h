// Budget: the work that one request may do. A request may do a fixed number of steps, and a fixed number more
// for each byte that it reads, so that its cost grows with the bytes of its input, however often the input
// repeats them through lists that overlap. Whatever hands out a fork, a resource, a table or a range of
// records charges for what it hands out; readers of single numbers do not. A step is about a nanosecond.
// Tests: tests/api/creation_test.cc.
#ifndef QUILLMARK_PLATFORM_BUDGET_H_
#define QUILLMARK_PLATFORM_BUDGET_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <numeric>
#include <utility>

namespace quillmark {

// Thrown when a request needs more steps than its budget has left; never reaches a host.
class BudgetSpent : public std::exception {
 public:
  const char* what() const noexcept override { return "the input repeats its bytes too often"; }
};

// What steps are spent on.
enum class Work : std::uint8_t {
  kFiles,  // looking up and reading files, and all that is none of the following
  kResourceMap,
  kFamilies,
  kStyleMappings,
  kKerning,
  kPrinterFonts,
  kNames,
  kOutlines,
  kCollection
};
inline constexpr std::size_t kWorks = static_cast<std::size_t>(Work::kCollection) + 1;

class Budget {
 public:
  static constexpr std::uint64_t kFixedSteps = 8'000'000;
  static constexpr std::uint64_t kStepsPerByte = 64;

  // The costs, in steps.
  static constexpr std::uint64_t kRecord = 4;            // one entry of a list
  static constexpr std::uint64_t kInsertion = 16;        // into a map, or one element sorted
  static constexpr std::uint64_t kCharacter = 2;         // decoded
  static constexpr std::uint64_t kDecode = 32;           // one text, beside its characters
  static constexpr std::uint64_t kSortedRecord = 64;     // one of thousands, in no order
  static constexpr std::uint64_t kFileQuestion = 1'000;  // one call that asks the file system
  static constexpr std::uint64_t kDeepLevel = 128;       // a folder level of a path that is deeper than usual
  static constexpr std::uint64_t kFileRead = 500;        // one read, beside its bytes
  static constexpr std::uint64_t kFace = 2'048;          // one face that is kept, beside its texts
  static constexpr std::uint64_t kKeptByte = 16;     // one byte of a kept face's texts, shared ones included
  static constexpr std::uint64_t kBytesPerStep = 2;  // read, summed, copied or compared

  explicit Budget(std::uint64_t bytes = 0) { Allow(bytes); }
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;

  // Adds the steps that `bytes` more bytes of input pay for.
  void Allow(std::uint64_t bytes) { left_ += std::min(bytes, kMostBytes) * kStepsPerByte; }

  // Throws BudgetSpent when fewer than `steps` are left; every later call then throws, too.
  void Charge(std::uint64_t steps) {
    if (steps > left_) {
      charged_[under_way_] += left_;
      left_ = 0;
      throw BudgetSpent();
    }
    left_ -= steps;
    charged_[under_way_] += steps;
  }
  void ChargeBytes(std::uint64_t bytes) { Charge(1 + bytes / kBytesPerStep); }
  void ChargeRecords(std::uint64_t count) { Charge(1 + std::min(count, kMostBytes) * kRecord); }

  std::uint64_t left() const { return left_; }
  std::uint64_t charged() const {
    return std::accumulate(charged_.begin(), charged_.end(), std::uint64_t{0});
  }
  // The work that took the most steps.
  Work most_work() const {
    return static_cast<Work>(std::max_element(charged_.begin(), charged_.end()) - charged_.begin());
  }

 private:
  friend class WorkScope;
  static constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 48;  // keeps the sums from wrapping

  std::uint64_t left_ = kFixedSteps;
  std::array<std::uint64_t, kWorks> charged_ = {};  // by Work
  std::size_t under_way_ = 0;                       // a Work
};

// Notes the charges of its lifetime as those of `work`; `budget` may be null.
class WorkScope {
 public:
  WorkScope(Budget* budget, Work work) : budget_(budget) {
    if (budget_ != nullptr) outer_ = std::exchange(budget_->under_way_, static_cast<std::size_t>(work));
  }
  ~WorkScope() {
    if (budget_ != nullptr) budget_->under_way_ = outer_;
  }
  WorkScope(const WorkScope&) = delete;
  WorkScope& operator=(const WorkScope&) = delete;

 private:
  Budget* const budget_;
  std::size_t outer_ = 0;
};

// The same with a budget that may be null, which means work without a bound.
inline void Charge(Budget* budget, std::uint64_t steps) {
  if (budget != nullptr) budget->Charge(steps);
}
inline void ChargeBytes(Budget* budget, std::uint64_t bytes) {
  if (budget != nullptr) budget->ChargeBytes(bytes);
}
inline void ChargeRecords(Budget* budget, std::uint64_t count) {
  if (budget != nullptr) budget->ChargeRecords(count);
}

}  // namespace quillmark

#endif
