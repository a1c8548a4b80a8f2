// PagedFile: a file's bytes at fixed addresses. Pages are read when they are first used; the others cost
// address space, no memory. For one thread at a time. Tests: tests/analysis/font_file_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_PAGED_FILE_H_
#define QUILLMARK_PLATFORM_FILES_PAGED_FILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/files/regular_file.h"

namespace quillmark {

class PagedFile {
 public:
  // The first `size` bytes of the file. Throws std::bad_alloc when that many cannot have addresses.
  PagedFile(RegularFile file, std::size_t size);

  std::size_t size() const { return size_; }
  // The bytes [offset, offset + length), or nothing when they do not all lie inside. They live as long as
  // this object; equal ranges have equal addresses. What cannot be read is zero.
  std::optional<Bytes> Range(std::size_t offset, std::size_t length) const;

 private:
  // Memory of its own for each file, given back whole: on the heap, the pages that files used would add up.
  struct Unmap {
    std::size_t size;
    void operator()(std::uint8_t* memory) const;
  };
  static std::unique_ptr<std::uint8_t, Unmap> Map(std::size_t size);
  void Load(std::size_t page) const;

  RegularFile file_;
  std::size_t size_;
  std::unique_ptr<std::uint8_t, Unmap> memory_;  // null for an empty file
  mutable std::vector<bool> loaded_;             // by page
  mutable std::size_t missing_;                  // pages
};

}  // namespace quillmark

#endif
