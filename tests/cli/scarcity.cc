// Loaded before the tool's own libraries, makes a machine of few threads, small blocks of memory and a
// failing disk, for root and for other users alike: SCARCE_THREADS says how many threads can be started,
// SCARCE_BLOCK how many bytes the largest block has, SCARCE_READ how many bytes of a file can be read.
// SHRINKING is the end of the paths of files that are cut in half whenever they are read, NO_PRIVILEGES takes
// from root what other users may not do, FOREIGN_DISK makes a network file system of every disk. MOUNTED is a
// folder that is the mount point of another file system. LISTS_TWICE lists each entry of a folder twice.
//
// Calls that change a disk are counted: the process is killed before number KILLED_AT, and from number
// FULL_AT on there is no room.
//
// It also sets time stamps apart from the clock: CLOCK_AHEAD by how many seconds the clock is ahead of the
// files' times, COARSE_STAMPS that times of files count whole pairs of seconds only. CLOCK_LEAPS is by how
// many seconds the clock that measures durations is ahead of its last answer.
#include <dirent.h>
#include <dlfcn.h>
#include <linux/capability.h>
#include <pthread.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <new>
#include <string>

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

static void Shrink(int file) {
  static const char* const ending = std::getenv("SHRINKING");
  if (ending == nullptr) return;
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  char path[PATH_MAX] = {};
  struct stat found {};
  if (::readlink(link.c_str(), path, sizeof path - 1) > 0 && std::string(path).ends_with(ending) &&
      ::fstat(file, &found) == 0) {
    (void)!::truncate(path, found.st_size / 2);
  }
}

extern "C" ssize_t pread(int file, void* bytes, size_t count, off_t offset) {
  static const auto read = reinterpret_cast<decltype(&pread)>(::dlsym(RTLD_NEXT, "pread"));
  static const off_t end = Limit("SCARCE_READ");
  if (offset < end) {
    const ssize_t done = read(file, bytes, std::min(count, static_cast<size_t>(end - offset)), offset);
    Shrink(file);
    return done;
  }
  errno = EIO;
  return -1;
}

static bool HasRoom() {
  static std::atomic<long> calls = 0;
  static const long killed_at = Limit("KILLED_AT"), full_at = Limit("FULL_AT");
  const long call = ++calls;
  if (call == killed_at) ::raise(SIGKILL);
  if (call >= full_at) errno = ENOSPC;
  return call < full_at;
}

extern "C" ssize_t write(int file, const void* bytes, size_t count) {
  static const auto next = Next<decltype(::write)>("write");
  return file <= STDERR_FILENO || HasRoom() ? next(file, bytes, count) : -1;
}

extern "C" ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
  static const auto next = Next<decltype(::pwrite64)>("pwrite64");
  return HasRoom() ? next(file, bytes, count, offset) : -1;
}

extern "C" int fdatasync(int file) {
  static const auto next = Next<decltype(::fdatasync)>("fdatasync");
  return HasRoom() ? next(file) : -1;
}

// These need no room.
extern "C" int ftruncate64(int file, off64_t size) noexcept {
  static const auto next = Next<int(int, off64_t)>("ftruncate64");
  HasRoom();
  return next(file, size);
}

extern "C" int unlink(const char* path) noexcept {
  static const auto next = Next<int(const char*)>("unlink");
  HasRoom();
  return next(path);
}

extern "C" int renameat2(int from, const char* path, int to, const char* new_path, unsigned flags) noexcept {
  static const auto next = Next<int(int, const char*, int, const char*, unsigned)>("renameat2");
  HasRoom();
  return next(from, path, to, new_path, flags);
}

extern "C" int statfs(const char* path, struct statfs* found) noexcept {
  static const auto next = Next<int(const char*, struct statfs*)>("statfs");
  const int status = next(path, found);
  if (std::getenv("FOREIGN_DISK") != nullptr) found->f_type = 0x6969;  // NFS
  return status;
}

extern "C" dirent* readdir(DIR* folder) {
  static const auto next = Next<dirent*(DIR*)>("readdir");
  static const bool is_twice = std::getenv("LISTS_TWICE") != nullptr;
  thread_local dirent last = {};
  if (is_twice && last.d_name[0] != '\0') {
    static thread_local dirent again;
    again = last;
    last.d_name[0] = '\0';
    return &again;
  }
  dirent* const entry = next(folder);
  if (entry != nullptr) last = *entry;
  return entry;
}

extern "C" int statx(int folder, const char* path, int flags, unsigned mask, struct statx* found) noexcept {
  static const auto next = Next<int(int, const char*, int, unsigned, struct statx*)>("statx");
  const char* const mounted = std::getenv("MOUNTED");
  const int status = next(folder, path, flags, mask, found);
  if (status != 0 || mounted == nullptr) return status;
  const std::string place = *path != '\0' ? path : "/proc/self/fd/" + std::to_string(folder);
  char whole[PATH_MAX] = {};
  if (::realpath(place.c_str(), whole) == nullptr) return status;
  found->stx_mask |= STATX_MNT_ID;
  found->stx_mnt_id = (std::string(whole) + '/').starts_with(std::string(mounted) + '/') ? 2 : 1;
  return status;
}

[[gnu::constructor]] static void DropPrivileges() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  const __user_cap_data_struct none[2] = {};
  if (std::getenv("NO_PRIVILEGES") != nullptr) ::syscall(SYS_capset, &header, none);
}

// Asked each time: the first call may come before the environment is there.
static bool IsScarce(std::size_t size) { return size > static_cast<std::size_t>(Limit("SCARCE_BLOCK")); }

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static const auto get = Next<int(clockid_t, timespec*)>("clock_gettime");
  static const long ahead = std::getenv("CLOCK_AHEAD") == nullptr ? 0 : Limit("CLOCK_AHEAD");
  static const long leap = std::getenv("CLOCK_LEAPS") == nullptr ? 0 : Limit("CLOCK_LEAPS");
  static std::atomic<long> leaps = 0;
  const int status = get(clock, time);
  if (clock == CLOCK_REALTIME_COARSE) time->tv_sec += ahead;
  if (clock == CLOCK_MONOTONIC) time->tv_sec += leap * ++leaps;
  return status;
}

extern "C" int fstatat(int folder, const char* path, struct stat* found, int flags) noexcept {
  static const auto get = Next<int(int, const char*, struct stat*, int)>("fstatat");
  static const bool is_coarse = std::getenv("COARSE_STAMPS") != nullptr;
  const int status = get(folder, path, found, flags);
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
