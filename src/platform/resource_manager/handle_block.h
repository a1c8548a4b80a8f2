// What a Handle points at: the data pointer that callers follow, then what the managers know of the block.
// Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_HANDLE_BLOCK_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_HANDLE_BLOCK_H_

#include <cstddef>
#include <type_traits>

#include "platform/resource_manager/resource_map.h"
#include "platform/resource_manager/resource_types.h"

namespace quillmark {

class OpenResourceFile;

struct HandleBlock {
  HandleBlock() = default;
  ~HandleBlock() { delete[] data; }
  HandleBlock(const HandleBlock&) = delete;
  HandleBlock& operator=(const HandleBlock&) = delete;

  char* data = nullptr;  // owned; first, so that a Handle is the block's address
  std::size_t size = 0;
  OpenResourceFile* file = nullptr;  // whose resource this is, and which owns it; null for an ordinary handle
  ResourceMap::Key key;              // of that resource
};
static_assert(std::is_standard_layout_v<HandleBlock>);

inline HandleBlock* BlockOf(Handle handle) { return reinterpret_cast<HandleBlock*>(handle); }
inline Handle HandleOf(HandleBlock* block) { return &block->data; }

}  // namespace quillmark

#endif
