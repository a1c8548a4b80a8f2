// Lets one call of this program fail or come short: an allocation, or a call that reads a file. Linked into a
// test program, it replaces operator new for the whole of it; the linker's --wrap leads the other calls here.
// What the standard library calls inside itself is not touched.
#ifndef QUILLMARK_TESTS_HOSTILE_FAILING_CALLS_H_
#define QUILLMARK_TESTS_HOSTILE_FAILING_CALLS_H_

#include <cstdint>

namespace quillmark {

enum class Fault {
  kNoMemory,     // this allocation fails
  kFails,        // this call fails with an input/output error
  kAllFail,      // this call and all after it
  kInterrupted,  // this call comes back without having done anything, as a signal makes it
  kShort,        // this read gives half of what it was asked for
  kEnds,         // this read gives nothing, as at the end of the file
  kShrinks,      // half of the file is gone before this read
};

// While it lives, the call of that number (from 1) meets the fault. One at a time, in one thread.
class FailingCall {
 public:
  FailingCall(Fault fault, std::int64_t number);
  ~FailingCall();
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;
  bool happened() const;  // whether there were as many calls
};

// Blocks from operator new that were not given back.
std::int64_t LiveBlocks();

}  // namespace quillmark

#endif
