// A file system of paths and bytes alone: what reads it does not touch the disk.
#ifndef QUILLMARK_TESTS_BUILDERS_MEMORY_FILES_H_
#define QUILLMARK_TESTS_BUILDERS_MEMORY_FILES_H_

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/file_system.h"

namespace quillmark {

class MemoryFiles : public FileSystem {
 public:
  // Reads of a file give no byte from `fail_from` on, but an error.
  explicit MemoryFiles(std::map<std::string, std::string> files, std::uint64_t fail_from = UINT64_MAX)
      : files_(std::move(files)), fail_from_(fail_from) {}

  FileStatus Status(const std::string& path) const override {
    const auto found = files_.find(path);
    if (found == files_.end()) return {.error = ENOENT};
    return {.regular = true, .size = found->second.size()};
  }
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override {
    const auto found = files_.find(path);
    if (found == files_.end()) return nullptr;
    return std::make_unique<File>(found->second, fail_from_);
  }
  std::vector<std::string> AttributeNames(const std::string&) const override { return {}; }
  std::optional<std::string> Attribute(const std::string&, const std::string&) const override {
    return std::nullopt;
  }

 private:
  class File : public OpenedFile {
   public:
    File(const std::string& bytes, std::uint64_t fail_from) : bytes_(bytes), fail_from_(fail_from) {}
    std::uint64_t size() const override { return bytes_.size(); }
    ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
      const std::uint64_t end = std::min<std::uint64_t>(bytes_.size(), fail_from_);
      const std::size_t length = offset < end ? std::min<std::size_t>(out.size(), end - offset) : 0;
      std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(length == 0 ? 0 : offset), length,
                  out.begin());
      return {length, length < out.size() && end < bytes_.size() ? EIO : 0};
    }

   private:
    const std::string& bytes_;
    const std::uint64_t fail_from_;
  };

  const std::map<std::string, std::string> files_;
  const std::uint64_t fail_from_;
};

}  // namespace quillmark

#endif
