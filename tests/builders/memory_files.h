// A file system of paths and bytes alone: what reads it does not touch the disk.
#ifndef QUILLMARK_TESTS_BUILDERS_MEMORY_FILES_H_
#define QUILLMARK_TESTS_BUILDERS_MEMORY_FILES_H_

#include <algorithm>
#include <cerrno>
#include <map>
#include <utility>

#include "platform/files/file_system.h"

namespace quillmark {

class MemoryFiles : public FileSystem {
 public:
  explicit MemoryFiles(std::map<std::string, std::string> files) : files_(std::move(files)) {}

  FileStatus Status(const std::string& path) const override {
    const auto found = files_.find(path);
    if (found == files_.end()) return {.error = ENOENT};
    return {.regular = true, .size = found->second.size()};
  }
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override {
    const auto found = files_.find(path);
    return found == files_.end() ? nullptr : std::make_unique<File>(found->second);
  }
  std::vector<std::string> AttributeNames(const std::string&) const override { return {}; }
  std::optional<std::string> Attribute(const std::string&, const std::string&) const override {
    return std::nullopt;
  }

 private:
  class File : public OpenedFile {
   public:
    explicit File(std::string_view bytes) : bytes_(bytes) {}
    std::uint64_t size() const override { return bytes_.size(); }
    ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
      const std::string_view rest = bytes_.substr(std::min<std::uint64_t>(offset, bytes_.size()));
      const std::size_t length = std::min(rest.size(), out.size());
      std::copy_n(rest.begin(), length, out.begin());
      return {length, 0};
    }

   private:
    const std::string_view bytes_;
  };

  const std::map<std::string, std::string> files_;
};

}  // namespace quillmark

#endif
