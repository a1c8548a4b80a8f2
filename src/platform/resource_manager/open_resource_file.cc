#include "platform/resource_manager/open_resource_file.h"

#include <memory>
#include <new>
#include <span>
#include <utility>

namespace quillmark {

OpenResourceFile::~OpenResourceFile() {
  for (const auto& [key, block] : handles_) FreeBlock(block);
}

Handle OpenResourceFile::HandleFor(ResourceMap::Key key, bool load, OSErr* error) {
  const auto known = handles_.find(IndexOf(key));
  const bool is_new = known == handles_.end();
  HandleBlock* block = is_new ? nullptr : known->second;
  if (is_new) {
    auto fresh = std::make_unique<HandleBlock>();
    fresh->file = this;
    fresh->key = key;
    handles_.emplace(IndexOf(key), fresh.get());
    block = fresh.release();
  }
  if (load) {
    *error = Load(*block);
  } else {
    *error = block->data != nullptr || map_.Data(key) ? noErr : mapReadErr;
  }
  if (*error == noErr) return HandleOf(block);
  if (is_new) {  // a handle that a caller holds already is kept
    Forget(*block);
    FreeBlock(block);
  }
  return nullptr;
}

OSErr OpenResourceFile::Load(HandleBlock& block) {
  if (block.data != nullptr) return noErr;
  const auto range = map_.Data(block.key);
  if (!range) return mapReadErr;
  MemoryBlock memory = AllocateMemory(range->length);
  if (memory == nullptr) throw std::bad_alloc();
  const std::span<std::uint8_t> bytes(reinterpret_cast<std::uint8_t*>(memory.get()), range->length);
  if (map_.fork().ReadAt(range->start, bytes) != bytes.size()) return ioErr;
  SetData(block, std::move(memory), range->length);
  return noErr;
}

void OpenResourceFile::Forget(HandleBlock& block) {
  handles_.erase(IndexOf(block.key));
  block.file = nullptr;
}

OSErr OpenResourceFile::Save() const {
  if (!writable_ || !map_.changed() || (map_.MapAttributes() & ResourceMap::kMapReadOnly) != 0) return noErr;
  return WriteMap(origin_, map_) ? noErr : ioErr;
}

}  // namespace quillmark
