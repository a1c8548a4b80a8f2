// WatchedFiles: a file system, the machine's at first, that records the first file that exists and cannot be
// opened or read: without this, a result that lacks the file would look complete. For one file at a time, on
// one thread. Tests: tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_REASONS_WATCHED_FILES_H_
#define QUILLMARK_TOOL_REASONS_WATCHED_FILES_H_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/file_system.h"

namespace quillmark::tool {

class WatchedFiles : public FileSystem {
 public:
  explicit WatchedFiles(const FileSystem& system = SystemFiles()) : system_(system) {}

  struct Failure {
    std::string path;
    int error = 0;  // errno
  };
  const std::optional<Failure>& failure() const { return failure_; }
  // What failed, in words, while `path` was read; empty when nothing did.
  std::string WhyUnread(const std::string& path) const;

  FileStatus Status(const std::string& path) const override { return system_.Status(path); }
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override;
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const override {
    return system_.FoldersAboveWith(name, folders);
  }
  std::vector<std::string> NamesIn(const std::string& folder) const override {
    return system_.NamesIn(folder);
  }
  std::vector<std::string> AttributeNames(const std::string& path) const override {
    return system_.AttributeNames(path);
  }
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const override {
    return system_.Attribute(path, name);
  }

 private:
  class WatchedFile;
  void Note(const std::string& path, int error) const;

  const FileSystem& system_;
  mutable std::optional<Failure> failure_;
};

}  // namespace quillmark::tool

#endif
