// One resource file that a thread has open: its map, the handles that were given out for its resources, and
// where a changed map goes. Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_OPEN_RESOURCE_FILE_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_OPEN_RESOURCE_FILE_H_

#include <cstdint>
#include <memory>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "platform/resource_manager/fork_writer.h"
#include "platform/resource_manager/resource_map.h"
#include "platform/resource_manager/resource_types.h"

namespace quillmark {

class OpenResourceFile;

// What a Handle points at: the data pointer that callers follow, then what the managers know of the block.
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

class OpenResourceFile {
 public:
  OpenResourceFile(MapOrigin origin, ResourceMap map, bool writable)
      : origin_(std::move(origin)), map_(std::move(map)), writable_(writable) {}
  ~OpenResourceFile() = default;  // frees the handles of its resources; writes nothing
  OpenResourceFile(const OpenResourceFile&) = delete;
  OpenResourceFile& operator=(const OpenResourceFile&) = delete;

  ResourceMap& map() { return map_; }

  // The handle of a resource, always the same until it is released; *error says why there is none. Data that
  // leave the data area give none, whether they are loaded or not.
  Handle HandleFor(ResourceMap::Key key, bool load, OSErr* error);
  // Loads the data of one of this file's handles, if they are not there. Throws std::bad_alloc rather than
  // answer that there is too little memory: a font with a resource left out would pass for the whole one.
  OSErr Load(HandleBlock& block);
  // Gives up a handle: the next HandleFor of its resource makes a new one.
  std::unique_ptr<HandleBlock> Forget(HandleBlock& block);
  // Writes the map if it was changed and the file is open for writing.
  [[nodiscard]] OSErr Save() const;

 private:
  static std::uint32_t IndexOf(ResourceMap::Key key) { return key.entry * 0x10000u + key.position; }

  MapOrigin origin_;
  ResourceMap map_;
  bool writable_;
  std::unordered_map<std::uint32_t, std::unique_ptr<HandleBlock>> handles_;
};

}  // namespace quillmark

#endif
