// Loaded before the tool's own libraries, makes a machine of few threads and small blocks of memory, for root
// and for other users alike: SCARCE_THREADS says how many threads can be started, SCARCE_BLOCK how many bytes
// the largest block has.
#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <new>

namespace {

long Limit(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? LONG_MAX : std::atol(text);
}

using Allocate = void*(std::size_t);

void* AllocateBlock(std::size_t size, Allocate* allocate) {
  static const auto largest = static_cast<std::size_t>(Limit("SCARCE_BLOCK"));
  if (size > largest) throw std::bad_alloc();
  return allocate(size);
}

}  // namespace

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) {
  static std::atomic<long> left = Limit("SCARCE_THREADS");
  static const auto create =
      reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
  return left.fetch_sub(1) > 0 ? create(thread, attributes, start, argument) : EAGAIN;
}

void* operator new(std::size_t size) {
  static const auto allocate = reinterpret_cast<Allocate*>(::dlsym(RTLD_NEXT, "_Znwm"));
  return AllocateBlock(size, allocate);
}

void* operator new[](std::size_t size) {
  static const auto allocate = reinterpret_cast<Allocate*>(::dlsym(RTLD_NEXT, "_Znam"));
  return AllocateBlock(size, allocate);
}
