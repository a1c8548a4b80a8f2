// Fork: the bytes of one fork of a Macintosh file, wherever a Linux file system keeps them. font_file.h
// decides which fork belongs to which file. Tests: tests/platform/forks_test.cc; fuzz/apple_double_fuzzer.cc.
#ifndef QUILLMARK_PLATFORM_FILES_FORKS_H_
#define QUILLMARK_PLATFORM_FILES_FORKS_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/byte_reader.h"
#include "platform/files/regular_file.h"

namespace quillmark {

// Receives bytes in pieces; returns false to stop.
using ByteSink = std::function<bool(Bytes)>;

// One fork, open for reading: a range of a file, or bytes held in memory (an extended attribute).
class Fork {
 public:
  explicit Fork(RegularFile file);
  explicit Fork(std::shared_ptr<const std::string> bytes);

  std::uint64_t length() const { return length_; }
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const;
  // As RegularFile::BlockAt, before length().
  Bytes BlockAt(std::uint64_t offset) const;
  // The bytes [offset, offset + length) as a fork; nothing when they do not all lie inside this one.
  std::optional<Fork> Part(std::uint64_t offset, std::uint64_t length) const;
  // Hands the bytes of a range to the sink in blocks; false when the sink stops or they cannot be read.
  [[nodiscard]] bool Copy(std::uint64_t offset, std::uint64_t length, const ByteSink& sink) const;

 private:
  std::optional<RegularFile> file_;
  std::shared_ptr<const std::string> bytes_;
  std::uint64_t start_ = 0;
  std::uint64_t length_ = 0;
};

}  // namespace quillmark

#endif
