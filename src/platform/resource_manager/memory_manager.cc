// The Memory Manager's handles. Their data are never moved.

#include <new>
#include <utility>

#include "platform/resource_manager/handle_block.h"
#include "platform/resource_manager/open_resource_file.h"
#include "platform/resource_manager/resource_manager.h"

namespace quillmark {

void SetData(HandleBlock& block, MemoryBlock memory, std::size_t size) {
  block.data = memory.release();
  block.size = size;
}

void FreeBlock(HandleBlock* block) {
  const MemoryBlock memory(block->data);
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
  if (size < 0) return nullptr;
  const auto length = static_cast<std::size_t>(size);
  auto memory = quillmark::AllocateMemory(length);
  auto* block = memory == nullptr ? nullptr : new (std::nothrow) HandleBlock;
  if (block == nullptr) return nullptr;
  quillmark::SetData(*block, std::move(memory), length);
  return quillmark::HandleOf(block);
}

void DisposeHandle(Handle handle) {
  if (handle == nullptr) return;
  HandleBlock* block = BlockOf(handle);
  // The resource file must not hand out the freed handle again.
  if (block->file != nullptr) block->file->Forget(*block);
  quillmark::FreeBlock(block);
}

Size GetHandleSize(Handle handle) {
  const bool loaded = handle != nullptr && *handle != nullptr;
  return loaded ? static_cast<Size>(BlockOf(handle)->size) : 0;
}
