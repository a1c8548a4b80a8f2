// Lets one call of this program fail or come short: an allocation, or a call that reads a file. Included by
// the one source of a test program, it replaces operator new for the whole of it; the linker's --wrap leads
// the other calls here. What the standard library calls inside itself is not touched.
#ifndef QUILLMARK_TESTS_HOSTILE_FAILING_CALLS_H_
#define QUILLMARK_TESTS_HOSTILE_FAILING_CALLS_H_

#include <sys/stat.h>
#include <sys/types.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>

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

namespace failing {

inline Fault fault = Fault::kNoMemory;
inline std::int64_t until_fault = 0;  // 1: the next call meets it
inline bool is_met = false;
inline std::atomic<std::int64_t> live_blocks = 0;  // from operator new, not given back

inline bool Meets(bool allocates) {
  if (allocates != (fault == Fault::kNoMemory)) return false;
  if (until_fault > 0 && --until_fault == 0) return is_met = true;
  return is_met && fault == Fault::kAllFail;
}

inline void* Allocate(std::size_t size) {
  void* const block = Meets(true) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) ++live_blocks;
  return block;
}

// Not inline in callers, where the compiler would take it for a mistake that what `new` gave is freed.
[[gnu::noinline]] inline void Free(void* block) {
  if (block != nullptr) --live_blocks;
  std::free(block);
}

// Whether a call that meets the fault fails for it, with errno set.
inline bool SetsError(bool may_be_interrupted) {
  const bool fails = fault == Fault::kFails || fault == Fault::kAllFail;
  errno = fails ? EIO : EINTR;
  return fails || (may_be_interrupted && fault == Fault::kInterrupted);
}

inline void HalveFile(int descriptor) {
  const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
  std::filesystem::resize_file(name, std::filesystem::file_size(name) / 2);
}

}  // namespace failing

// While it lives, the call of that number (from 1) meets the fault. One at a time, in one thread.
class FailingCall {
 public:
  FailingCall(Fault kind, std::int64_t number) {
    failing::fault = kind;
    failing::until_fault = number;
    failing::is_met = false;
  }
  ~FailingCall() {
    failing::until_fault = 0;
    failing::is_met = false;
  }
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;
  bool happened() const { return failing::is_met; }  // whether there were as many calls
};

}  // namespace quillmark

using quillmark::Fault;
using namespace quillmark::failing;

// Those for arrays lead to these, but for the sanitizers' own.
void* operator new(std::size_t size) {
  void* const block = Allocate(size);
  return block == nullptr ? throw std::bad_alloc() : block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }

#define QM_DECLARE(Result, name, ...) \
  Result __real_##name(__VA_ARGS__);  \
  Result __wrap_##name(__VA_ARGS__);  \
  Result __wrap_##name(__VA_ARGS__)

// A call that cannot be interrupted, of these arguments.
#define QM_WRAP(Result, failed, name, arguments, ...)                           \
  QM_DECLARE(Result, name, __VA_ARGS__) {                                       \
    return Meets(false) && SetsError(false) ? failed : __real_##name arguments; \
  }

extern "C" {
QM_WRAP(int, -1, stat, (path, status), const char* path, struct stat* status)
QM_WRAP(int, -1, fstat, (descriptor, status), int descriptor, struct stat* status)
QM_WRAP(int, -1, fstatat, (at, path, status, flags), int at, const char* path, struct stat* status, int flags)
QM_WRAP(ssize_t, -1, listxattr, (path, list, size), const char* path, char* list, std::size_t size)
QM_WRAP(ssize_t, -1, getxattr, (path, name, value, size), const char* path, const char* name, void* value,
        std::size_t size)
QM_WRAP(std::FILE*, nullptr, fdopen, (descriptor, mode), int descriptor, const char* mode)
QM_WRAP(int, -1, fseeko, (file, offset, origin), std::FILE* file, off_t offset, int origin)
QM_DECLARE(void*, calloc, std::size_t count, std::size_t size) {
  return Meets(true) ? nullptr : __real_calloc(count, size);
}
QM_DECLARE(int, open, const char* path, int flags, ...) {  // the library creates no file here
  return Meets(false) && SetsError(true) ? -1 : __real_open(path, flags);
}
QM_DECLARE(ssize_t, pread, int descriptor, void* buffer, std::size_t size, off_t offset) {
  if (Meets(false)) {
    if (SetsError(true)) return -1;
    if (fault == Fault::kShrinks) HalveFile(descriptor);
    if (fault == Fault::kShort) size = (size + 1) / 2;
    if (fault == Fault::kEnds) return 0;
  }
  return __real_pread(descriptor, buffer, size, offset);
}
QM_DECLARE(std::size_t, fread, void* buffer, std::size_t size, std::size_t count, std::FILE* file) {
  if (Meets(false) && fault != Fault::kInterrupted) {
    if (fault == Fault::kShrinks) {
      HalveFile(::fileno(file));
    } else {
      count = fault == Fault::kShort ? count / 2 : 0;
    }
  }
  return __real_fread(buffer, size, count, file);
}
}

#endif
