// Lets one allocation of this program fail. Linked into a test program, it replaces operator new for the
// whole of it; the calls of calloc are caught by the linker's --wrap=calloc.
#ifndef QUILLMARK_TESTS_HOSTILE_FAILING_ALLOCATIONS_H_
#define QUILLMARK_TESTS_HOSTILE_FAILING_ALLOCATIONS_H_

#include <cstdint>

namespace quillmark {

// While it lives, the allocation of that number (from 1) fails, and none after it. One at a time, in one
// thread.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::int64_t number);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  bool happened() const;
};

// Blocks from operator new that were not given back.
std::int64_t LiveBlocks();

}  // namespace quillmark

#endif
