// Reads the data of the resources of one open map. In a hostile map tens of thousands of references name one
// large block, or blocks that overlap, and every face asks for some of them: once several times as much was
// read as the whole data area holds, the area is kept, and what is asked for is handed out where it lies.
// Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_DATA_H_
#define QUILLMARK_PLATFORM_RESOURCE_DATA_H_

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/resource_manager.h"
#include "platform/resource_map.h"

namespace quillmark {

// Zero-filled memory, never null for size 0; null when it cannot be had. std::bad_alloc when not even the
// count of its owners can.
std::shared_ptr<char[]> AllocateData(std::size_t size);

class ResourceData {
 public:
  explicit ResourceData(ResourceMap::DataRange area) : area_(area) {}

  // The bytes of a range of the area; null, with the reason, when they cannot be had. They may lie in memory
  // that others share, so nobody writes to them.
  std::shared_ptr<char[]> Read(const Fork& fork, ResourceMap::DataRange range, OSErr* error);

 private:
  // Areas of this size at most are kept: those of all but the largest fonts.
  static constexpr std::uint32_t kLargestArea = 32 * 1024 * 1024;
  // Reading every resource of a sound font, as often as identifying it does, stays below this.
  static constexpr std::uint64_t kReadsOfTheArea = 8;
  // What a short read costs, in bytes of a long one.
  static constexpr std::uint64_t kCostOfARead = 4096;

  ResourceMap::DataRange area_;
  std::uint64_t spent_ = 0;
  std::shared_ptr<char[]> held_;  // the bytes of the area, once it is kept
};

}  // namespace quillmark

#endif
