// FileSystem: the few calls by which fonts are looked up and read. The exported functions use the system's
// own file system; another one may stand for an archive, record the files that a result depended on, or hold
// files in memory (tests/builders/memory_files.h). Calls that fail: tests/hostile/failing_calls.h. Each
// request goes through a FileAccess, which charges calls and reads to its budget. Tests:
// tests/platform/forks_test.cc; tests/hostile/file_failure_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_FILE_SYSTEM_H_
#define QUILLMARK_PLATFORM_FILES_FILE_SYSTEM_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/budget.h"

namespace quillmark {

struct FileStatus {
  int error = 0;  // errno of stat; 0 when something exists at the path
  bool regular = false;
  bool directory = false;
  std::uint64_t size = 0;  // bytes, of a regular file
};

// One open regular file.
class OpenedFile {
 public:
  virtual ~OpenedFile() = default;
  virtual std::uint64_t size() const = 0;  // bytes, as it was when opened
  struct ReadResult {
    std::size_t length;  // bytes that were read: fewer than asked for at the end of the file and on an error
    int error;           // errno of a read that failed, else 0
  };
  virtual ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) = 0;
};

// Paths are bytes as the system takes them; symbolic links are followed. May be asked from several threads.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  // What is at the path, without opening it: a device or FIFO must not be opened even for a moment. A path
  // with a zero byte names nothing.
  virtual FileStatus Status(const std::string& path) const = 0;
  // Null, with errno set, for what is no regular file or cannot be opened. Never blocks.
  virtual std::unique_ptr<OpenedFile> Open(const std::string& path) const = 0;
  // Which of the folders above a file may hold something of this name: lengths of their paths, each with its
  // slash, the longest first. `folders` is the path of the file's folder: empty, or with "/" at both ends and
  // no empty part. A file system that cannot tell cheaply gives all.
  virtual std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const;
  // What lies in a folder, in no order; none where it cannot be listed.
  virtual std::vector<std::string> NamesIn(const std::string& folder) const;
  // Extended attributes of a file; none where the file system has no such thing.
  virtual std::vector<std::string> AttributeNames(const std::string& path) const = 0;
  virtual std::optional<std::string> Attribute(const std::string& path, const std::string& name) const = 0;
};

// The machine's own file system.
const FileSystem& SystemFiles();

// One request's access to a file system: charges the budget, and shares one block of bytes among the files
// that are read. `system` and `budget` (may be null: no bound) outlive the object and the files it opened.
// For one thread at a time.
class FileAccess {
 public:
  // How much of a file is usually read: all of it, so that the first read takes 64 KB, or some parts, so that
  // it takes 4 KB.
  enum class Reads { kWhole, kParts };

  explicit FileAccess(const FileSystem& system = SystemFiles(), Budget* budget = nullptr,
                      Reads reads = Reads::kWhole)
      : system_(system), budget_(budget), reads_(reads) {}

  FileStatus Status(const std::string& path) const;
  std::unique_ptr<OpenedFile> Open(const std::string& path) const;
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const;
  std::vector<std::string> AttributeNames(const std::string& path) const;
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const;
  Budget* budget() const { return budget_; }
  Reads reads() const { return reads_; }

  using Block = std::array<std::uint8_t, std::size_t{64} * 1024>;
  // The shared block while no other file uses it, else a fresh one.
  std::shared_ptr<Block> TakeBlock();

 private:
  void ChargeQuestion(const std::string& path) const;

  const FileSystem& system_;
  Budget* const budget_;
  const Reads reads_;
  std::shared_ptr<Block> block_;
};

}  // namespace quillmark

#endif
