#include "platform/files/paged_file.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>
#include <span>
#include <utility>

namespace quillmark {
namespace {

// Small, since the tables that are parsed are a few kilobytes each, scattered over the file.
constexpr std::size_t kPageSize = std::size_t{16} * 1024;

}  // namespace

PagedFile::PagedFile(RegularFile file, std::size_t size)
    : file_(std::move(file)),
      size_(size),
      memory_(Map(size)),
      loaded_((size + kPageSize - 1) / kPageSize),
      missing_(loaded_.size()) {}

void PagedFile::Unmap::operator()(std::uint8_t* memory) const { ::munmap(memory, size); }

std::unique_ptr<std::uint8_t, PagedFile::Unmap> PagedFile::Map(std::size_t size) {
  if (size == 0) return {nullptr, Unmap{0}};
  void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  return {static_cast<std::uint8_t*>(memory), Unmap{size}};
}

std::optional<Bytes> PagedFile::Range(std::size_t offset, std::size_t length) const {
  const auto range = Slice({memory_.get(), size_}, offset, length);
  // Once all pages are loaded no page is looked at again, as thousands of faces may each ask for most of a
  // file.
  if (!range || length == 0 || missing_ == 0) return range;
  for (std::size_t page = offset / kPageSize; page <= (offset + length - 1) / kPageSize; ++page) {
    if (!loaded_[page]) Load(page);
  }
  return range;
}

void PagedFile::Load(std::size_t page) const {
  const std::size_t start = page * kPageSize;
  const auto bytes = std::span(memory_.get(), size_).subspan(start, std::min(kPageSize, size_ - start));
  const std::size_t read = file_.ReadAt(start, bytes);
  std::ranges::fill(bytes.subspan(read), std::uint8_t{0});
  loaded_[page] = true;
  --missing_;
}

}  // namespace quillmark
