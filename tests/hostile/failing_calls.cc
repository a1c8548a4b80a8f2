#include "hostile/failing_calls.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>

using quillmark::Fault;

namespace {

Fault fault = Fault::kNoMemory;
std::int64_t until_fault = 0;  // 1: the next call meets it
bool is_met = false;
std::atomic<std::int64_t> live_blocks = 0;

bool Meets(bool allocates) {
  if (allocates != (fault == Fault::kNoMemory)) return false;
  if (until_fault > 0 && --until_fault == 0) return is_met = true;
  return is_met && fault == Fault::kAllFail;
}

void* Allocate(std::size_t size) {
  void* const block = Meets(true) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) ++live_blocks;
  return block;
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Free(void* block) {
  if (block != nullptr) --live_blocks;
  std::free(block);
}

// Whether a call that meets the fault fails for it, with errno set.
bool SetsError(bool may_be_interrupted) {
  const bool fails = fault == Fault::kFails || fault == Fault::kAllFail;
  errno = fails ? EIO : EINTR;
  return fails || (may_be_interrupted && fault == Fault::kInterrupted);
}

void HalveFile(int descriptor) {
  const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
  std::filesystem::resize_file(name, std::filesystem::file_size(name) / 2);
}

}  // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block); }

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

namespace quillmark {

FailingCall::FailingCall(Fault kind, std::int64_t number) {
  fault = kind;
  until_fault = number;
  is_met = false;
}

FailingCall::~FailingCall() {
  until_fault = 0;
  is_met = false;
}

bool FailingCall::happened() const { return is_met; }

std::int64_t LiveBlocks() { return live_blocks; }

}  // namespace quillmark
