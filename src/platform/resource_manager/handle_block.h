// What a Handle points at: the data pointer that callers follow, then what the managers know of the block.
// Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_HANDLE_BLOCK_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_HANDLE_BLOCK_H_

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "platform/resource_manager/resource_map.h"
#include "platform/resource_manager/resource_types.h"

namespace quillmark {

class OpenResourceFile;

struct FreeMemory {
  void operator()(char* memory) const { std::free(memory); }
};
using MemoryBlock = std::unique_ptr<char, FreeMemory>;
// Zero-filled; not null for size 0; null when there is too little memory.
inline MemoryBlock AllocateMemory(std::size_t size) {
  return MemoryBlock(static_cast<char*>(std::calloc(size == 0 ? 1 : size, 1)));
}

struct HandleBlock {
  char* data = nullptr;  // owned; first, so that a Handle is the block's address
  std::size_t size = 0;
  OpenResourceFile* file = nullptr;  // whose resource this is; null for an ordinary handle
  ResourceMap::Key key;              // of that resource
};
static_assert(std::is_standard_layout_v<HandleBlock>);

inline HandleBlock* BlockOf(Handle handle) { return reinterpret_cast<HandleBlock*>(handle); }
inline Handle HandleOf(HandleBlock* block) { return &block->data; }

// Makes `memory` the block's data.
void SetData(HandleBlock& block, MemoryBlock memory, std::size_t size);
// Frees the block and its data; it must not be reachable from a file any more.
void FreeBlock(HandleBlock* block);

}  // namespace quillmark

#endif
