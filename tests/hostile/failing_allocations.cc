#include "hostile/failing_allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::int64_t until_failure = 0;  // 1: the next one fails; 0 and less: none does
std::atomic<std::int64_t> live_blocks = 0;

bool MustFail() { return until_failure > 0 && --until_failure == 0; }

void* Allocate(std::size_t size) {
  void* const block = MustFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
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

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return MustFail() ? nullptr : __real_calloc(count, size);
}
}

namespace quillmark {

FailingAllocation::FailingAllocation(std::int64_t number) { until_failure = number; }
FailingAllocation::~FailingAllocation() { until_failure = 0; }
bool FailingAllocation::happened() const { return until_failure == 0; }

std::int64_t LiveBlocks() { return live_blocks; }

}  // namespace quillmark
