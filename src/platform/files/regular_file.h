// RegularFile: one open file, read through a block of its bytes. Tests: tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_REGULAR_FILE_H_
#define QUILLMARK_PLATFORM_FILES_REGULAR_FILE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/byte_reader.h"
#include "platform/files/file_system.h"

namespace quillmark {

// Closed with the last copy. Copies share one block of the file's bytes, so that a small file, and the head
// of a large one, are read once for all who look: use them on one thread. Files are read, not mapped, since a
// mapping faults when its file shrinks.
class RegularFile {
 public:
  // Nothing when the path names no regular file or it cannot be opened for reading. `access` outlives the
  // file's last copy.
  static std::optional<RegularFile> Open(FileAccess& access, const std::string& path);
  // The same in the machine's file system, without a budget.
  static std::optional<RegularFile> Open(const std::string& path);

  std::uint64_t size() const;  // bytes, as it was when opened
  // Reads at most out.size() bytes from `offset`; returns how many were read (fewer at the end or on an
  // error).
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const;
  // Some bytes from `offset` on, at least one before size() and at most a block. They are valid until this
  // object or a copy of it reads again. What cannot be read is zero.
  Bytes BlockAt(std::uint64_t offset) const;

 private:
  class Contents;
  explicit RegularFile(std::shared_ptr<Contents> contents);

  std::shared_ptr<Contents> contents_;
};

}  // namespace quillmark

#endif
