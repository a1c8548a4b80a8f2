#include "platform/resource_data.h"

#include <cstdlib>
#include <span>

namespace quillmark {
namespace {

std::shared_ptr<char[]> ReadRange(const Fork& fork, ResourceMap::DataRange range, OSErr* error) {
  auto memory = AllocateData(range.length);
  if (memory == nullptr) {
    *error = memFullErr;
    return nullptr;
  }
  const std::span<std::uint8_t> bytes(reinterpret_cast<std::uint8_t*>(memory.get()), range.length);
  if (fork.ReadAt(range.start, bytes) == bytes.size()) return memory;
  *error = ioErr;
  return nullptr;
}

}  // namespace

std::shared_ptr<char[]> AllocateData(std::size_t size) {
  return {static_cast<char*>(std::calloc(size == 0 ? 1 : size, 1)), &std::free};
}

std::shared_ptr<char[]> ResourceData::Read(const Fork& fork, ResourceMap::DataRange range, OSErr* error) {
  spent_ += range.length + kCostOfARead;
  if (held_ == nullptr && area_.length <= kLargestArea &&
      spent_ / kReadsOfTheArea > area_.length + kCostOfARead) {
    OSErr ignored = noErr;
    held_ = ReadRange(fork, area_, &ignored);  // failing that, each is read as before
    spent_ = 0;
  }
  if (held_ == nullptr) return ReadRange(fork, range, error);
  const std::uint64_t offset = range.start - area_.start;
  if (!Slice(AsBytes({held_.get(), area_.length}), offset, range.length)) {
    *error = mapReadErr;
    return nullptr;
  }
  return {held_, held_.get() + offset};
}

}  // namespace quillmark
