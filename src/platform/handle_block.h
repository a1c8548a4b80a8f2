// What a Handle points at: the data pointer that callers follow, then what the managers know of the block.
// Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_HANDLE_BLOCK_H_
#define QUILLMARK_PLATFORM_HANDLE_BLOCK_H_

#include "platform/resource_manager.h"
#include "platform/resource_map.h"

namespace quillmark {

class OpenResourceFile;

struct HandleBlock {
  char* data = nullptr;  // first, so that a Handle is the block's address; from AllocateData
  std::size_t size = 0;
  OpenResourceFile* file = nullptr;  // whose resource this is; null for an ordinary handle
  ResourceMap::Key key;              // of that resource
};

inline HandleBlock* BlockOf(Handle handle) { return reinterpret_cast<HandleBlock*>(handle); }
inline Handle HandleOf(HandleBlock* block) { return &block->data; }

// Gives the block zero-filled data of that size, never null for size 0; false when memory runs out.
[[nodiscard]] bool AllocateData(HandleBlock& block, std::size_t size);
void FreeData(HandleBlock& block);  // leaves it as one that is not loaded
// Frees the block and its data; it must not be reachable from a file any more.
void FreeBlock(HandleBlock* block);

}  // namespace quillmark

#endif
