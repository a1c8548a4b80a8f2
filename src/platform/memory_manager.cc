// The Memory Manager's handles: relocation is gone, so a handle's data stay where they are.

#include <cstdlib>
#include <new>

#include "platform/handle_block.h"
#include "platform/open_resource_file.h"
#include "platform/resource_manager.h"

namespace quillmark {
bool AllocateData(HandleBlock& block, std::size_t size) {
  char* data = static_cast<char*>(std::calloc(size == 0 ? 1 : size, 1));
  if (data == nullptr) return false;
  block.data = data;
  block.size = size;
  return true;
}

void FreeData(HandleBlock& block) {
  std::free(block.data);
  block.data = nullptr;
  block.size = 0;
}

void FreeBlock(HandleBlock* block) {
  FreeData(*block);
  delete block;
}

Bytes HandleBytes(Handle handle) {
  if (handle == nullptr || *handle == nullptr) return {};
  const HandleBlock& block = *BlockOf(handle);
  return AsBytes({block.data, block.size});
}

}  // namespace quillmark

using quillmark::BlockOf;
using quillmark::HandleBlock;

Handle NewHandle(Size size) {
  auto* block = size < 0 ? nullptr : new (std::nothrow) HandleBlock;
  if (block != nullptr && !quillmark::AllocateData(*block, static_cast<std::size_t>(size))) {
    quillmark::FreeBlock(block);
    block = nullptr;
  }
  return block == nullptr ? nullptr : quillmark::HandleOf(block);
}

void DisposeHandle(Handle handle) {
  if (handle == nullptr) return;
  HandleBlock* block = BlockOf(handle);
  // A map must not hand out what is gone.
  if (block->file != nullptr) block->file->Forget(*block);
  quillmark::FreeBlock(block);
}

Size GetHandleSize(Handle handle) {
  const bool loaded = handle != nullptr && *handle != nullptr;
  return loaded ? static_cast<Size>(BlockOf(handle)->size) : 0;
}
