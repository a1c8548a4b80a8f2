// Loaded before the tool's own libraries, makes a machine of few threads, small blocks of memory and a
// failing disk, for root and for other users alike: SCARCE_THREADS says how many threads can be started,
// SCARCE_BLOCK how many bytes the largest block has, SCARCE_READ how many bytes of a file can be read. It
// also sets time stamps apart from the clock: CLOCK_AHEAD by how many seconds the clock is ahead of the
// files' times, COARSE_STAMPS that times of files count whole pairs of seconds only.
#include <dlfcn.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <new>

static long Limit(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? LONG_MAX : std::atol(text);
}

template <typename Function>
static Function* Next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) {
  static std::atomic<long> left = Limit("SCARCE_THREADS");
  static const auto create = Next<decltype(::pthread_create)>("pthread_create");
  return left.fetch_sub(1) > 0 ? create(thread, attributes, start, argument) : EAGAIN;
}

extern "C" ssize_t pread(int file, void* bytes, size_t count, off_t offset) {
  static const auto read = reinterpret_cast<decltype(&pread)>(::dlsym(RTLD_NEXT, "pread"));
  static const off_t end = Limit("SCARCE_READ");
  if (offset < end) return read(file, bytes, std::min(count, static_cast<size_t>(end - offset)), offset);
  errno = EIO;
  return -1;
}

// Asked each time: the first call may come before the environment is there.
static bool IsScarce(std::size_t size) { return size > static_cast<std::size_t>(Limit("SCARCE_BLOCK")); }

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static const auto get = Next<int(clockid_t, timespec*)>("clock_gettime");
  static const long ahead = std::getenv("CLOCK_AHEAD") == nullptr ? 0 : Limit("CLOCK_AHEAD");
  const int status = get(clock, time);
  if (clock == CLOCK_REALTIME_COARSE) time->tv_sec += ahead;
  return status;
}

extern "C" int stat(const char* path, struct stat* found) noexcept {
  static const auto get = Next<int(const char*, struct stat*)>("stat");
  static const bool is_coarse = std::getenv("COARSE_STAMPS") != nullptr;
  const int status = get(path, found);
  for (timespec* time : {&found->st_mtim, &found->st_ctim}) {
    if (is_coarse && status == 0) *time = {time->tv_sec / 2 * 2, 0};
  }
  return status;
}

void* operator new(std::size_t size) {
  static const auto allocate = Next<void*(std::size_t)>("_Znwm");
  if (IsScarce(size)) throw std::bad_alloc();
  return allocate(size);
}

extern "C" void* mmap(void* at, size_t size, int protection, int flags, int file, off_t offset) noexcept {
  static const auto map = reinterpret_cast<decltype(&mmap)>(::dlsym(RTLD_NEXT, "mmap"));
  return IsScarce(size) ? MAP_FAILED : map(at, size, protection, flags, file, offset);
}

void* operator new[](std::size_t size) { return operator new(size); }
