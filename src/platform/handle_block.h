// What a Handle points at: the data pointer that callers follow, then what the managers know of the block.
// Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_HANDLE_BLOCK_H_
#define QUILLMARK_PLATFORM_HANDLE_BLOCK_H_

#include <cstddef>
#include <memory>
#include <type_traits>

#include "platform/resource_manager.h"
#include "platform/resource_map.h"

namespace quillmark {

class OpenResourceFile;

struct HandleBlock {
  char* data = nullptr;  // first, so that a Handle is the block's address
  std::size_t size = 0;
  std::shared_ptr<char[]> memory;    // what `data` lies in; handles of one map may share it
  OpenResourceFile* file = nullptr;  // whose resource this is; null for an ordinary handle
  ResourceMap::Key key;              // of that resource
  ResourceMap::DataRange range;      // of its data, once they are loaded
};
static_assert(std::is_standard_layout_v<HandleBlock>);

inline HandleBlock* BlockOf(Handle handle) { return reinterpret_cast<HandleBlock*>(handle); }
inline Handle HandleOf(HandleBlock* block) { return &block->data; }

// Makes `memory` the block's data.
void SetData(HandleBlock& block, std::shared_ptr<char[]> memory, std::size_t size);
// Frees the block, and its data when no other block shares them; it must not be reachable from a file any
// more.
void FreeBlock(HandleBlock* block);

}  // namespace quillmark

#endif
