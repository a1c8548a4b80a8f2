// Lets the calls by which the library reads files fail or come short. The linker's --wrap leads those calls
// here; what the standard library calls inside itself is not touched.
#ifndef QUILLMARK_TESTS_HOSTILE_FAILING_FILES_H_
#define QUILLMARK_TESTS_HOSTILE_FAILING_FILES_H_

#include <cstdint>

namespace quillmark {

enum class FileFault {
  kFails,        // this call, with an input/output error
  kAllFail,      // this call and all after it
  kInterrupted,  // this call comes back without having done anything, as a signal makes it
  kShort,        // this read gives half of what it was asked for
  kEnds,         // this read gives nothing, as at the end of the file
  kShrinks,      // half of the file is gone before this read
};

// While it lives, the call of that number (from 1) meets the fault. One at a time, in one thread.
class FailingFile {
 public:
  FailingFile(FileFault fault, std::int64_t number);
  ~FailingFile();
  FailingFile(const FailingFile&) = delete;
  FailingFile& operator=(const FailingFile&) = delete;
  bool happened() const;  // whether there were as many calls
};

}  // namespace quillmark

#endif
