#include "platform/resource_manager/open_resource_file.h"

#include <span>

namespace quillmark {

Handle OpenResourceFile::HandleFor(ResourceMap::Key key, bool load, OSErr* error) {
  auto known = handles_.find(IndexOf(key));
  const bool is_new = known == handles_.end();
  if (is_new) {
    auto fresh = std::make_unique<HandleBlock>();
    fresh->file = this;
    fresh->key = key;
    known = handles_.emplace(IndexOf(key), std::move(fresh)).first;
  }
  HandleBlock& block = *known->second;
  if (load) {
    *error = Load(block);
  } else {
    *error = block.data != nullptr || map_.Data(key) ? noErr : mapReadErr;
  }
  if (*error == noErr) return &block.data;
  if (is_new) handles_.erase(known);  // a handle that a caller holds already is kept
  return nullptr;
}

OSErr OpenResourceFile::Load(HandleBlock& block) {
  if (block.data != nullptr) return noErr;
  const auto range = map_.Data(block.key);
  if (!range) return mapReadErr;
  std::unique_ptr<char[]> memory(new char[range->length]);  // not null for length 0
  const std::span<std::uint8_t> bytes(reinterpret_cast<std::uint8_t*>(memory.get()), range->length);
  if (map_.fork().ReadAt(range->start, bytes) != bytes.size()) return ioErr;
  block.data = memory.release();
  block.size = range->length;
  return noErr;
}

std::unique_ptr<HandleBlock> OpenResourceFile::Forget(HandleBlock& block) {
  block.file = nullptr;
  return std::move(handles_.extract(IndexOf(block.key)).mapped());
}

OSErr OpenResourceFile::Save() const {
  if (!writable_ || !map_.changed() || (map_.MapAttributes() & ResourceMap::kMapReadOnly) != 0) return noErr;
  return WriteMap(origin_, map_) ? noErr : ioErr;
}

}  // namespace quillmark
