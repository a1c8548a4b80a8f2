#include "hostile/failing_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

using quillmark::FileFault;

namespace {

FileFault fault = FileFault::kFails;
std::int64_t until_fault = 0;  // 1: the next call meets it
bool is_met = false;

bool Meets() {
  if (until_fault > 0 && --until_fault == 0) {
    is_met = true;
    return true;
  }
  return is_met && fault == FileFault::kAllFail;
}

// For calls that read nothing: whether this one fails, with errno set. Those that a signal interrupts may do
// so.
bool Fails(bool may_be_interrupted) {
  if (!Meets()) return false;
  const bool fails = fault == FileFault::kFails || fault == FileFault::kAllFail;
  const bool is_interrupted = fault == FileFault::kInterrupted && may_be_interrupted;
  errno = fails ? EIO : EINTR;
  return fails || is_interrupted;
}

void HalveFile(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return;
  const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
  static_cast<void>(::truncate(name.c_str(), status.st_size / 2) == 0);
}

}  // namespace

extern "C" {
int __real_open(const char* path, int flags, ...);
int __real_stat(const char* path, struct stat* status);
int __real_fstat(int descriptor, struct stat* status);
int __real_fstatat(int folder, const char* path, struct stat* status, int flags);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __real_listxattr(const char* path, char* list, size_t size);
ssize_t __real_getxattr(const char* path, const char* name, void* value, size_t size);
std::FILE* __real_fdopen(int descriptor, const char* mode);
int __real_fseeko(std::FILE* file, off_t offset, int origin);
size_t __real_fread(void* buffer, size_t size, size_t count, std::FILE* file);

int __wrap_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : mode_t{0};
  va_end(rest);
  return Fails(true) ? -1 : __real_open(path, flags, mode);
}

int __wrap_stat(const char* path, struct stat* status);
int __wrap_stat(const char* path, struct stat* status) {
  return Fails(false) ? -1 : __real_stat(path, status);
}

int __wrap_fstat(int descriptor, struct stat* status);
int __wrap_fstat(int descriptor, struct stat* status) {
  return Fails(false) ? -1 : __real_fstat(descriptor, status);
}

int __wrap_fstatat(int folder, const char* path, struct stat* status, int flags);
int __wrap_fstatat(int folder, const char* path, struct stat* status, int flags) {
  return Fails(false) ? -1 : __real_fstatat(folder, path, status, flags);
}

ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
  if (Meets()) {
    switch (fault) {
      case FileFault::kFails:
      case FileFault::kAllFail:
        errno = EIO;
        return -1;
      case FileFault::kInterrupted:
        errno = EINTR;
        return -1;
      case FileFault::kShort:
        return __real_pread(descriptor, buffer, (size + 1) / 2, offset);
      case FileFault::kEnds:
        return 0;
      case FileFault::kShrinks:
        HalveFile(descriptor);
    }
  }
  return __real_pread(descriptor, buffer, size, offset);
}

ssize_t __wrap_listxattr(const char* path, char* list, size_t size);
ssize_t __wrap_listxattr(const char* path, char* list, size_t size) {
  return Fails(false) ? -1 : __real_listxattr(path, list, size);
}

ssize_t __wrap_getxattr(const char* path, const char* name, void* value, size_t size);
ssize_t __wrap_getxattr(const char* path, const char* name, void* value, size_t size) {
  return Fails(false) ? -1 : __real_getxattr(path, name, value, size);
}

std::FILE* __wrap_fdopen(int descriptor, const char* mode);
std::FILE* __wrap_fdopen(int descriptor, const char* mode) {
  return Fails(false) ? nullptr : __real_fdopen(descriptor, mode);
}

int __wrap_fseeko(std::FILE* file, off_t offset, int origin);
int __wrap_fseeko(std::FILE* file, off_t offset, int origin) {
  return Fails(false) ? -1 : __real_fseeko(file, offset, origin);
}

size_t __wrap_fread(void* buffer, size_t size, size_t count, std::FILE* file);
size_t __wrap_fread(void* buffer, size_t size, size_t count, std::FILE* file) {
  if (Meets() && fault != FileFault::kInterrupted) {
    if (fault == FileFault::kShrinks) {
      HalveFile(::fileno(file));
    } else {
      count = fault == FileFault::kShort ? count / 2 : 0;
    }
  }
  return __real_fread(buffer, size, count, file);
}
}

namespace quillmark {

FailingFile::FailingFile(FileFault kind, std::int64_t number) {
  fault = kind;
  until_fault = number;
  is_met = false;
}

FailingFile::~FailingFile() {
  until_fault = 0;
  is_met = false;
}

bool FailingFile::happened() const { return is_met; }

}  // namespace quillmark
