// TemporaryFile: a new file with a unique name in a folder, removed at the end unless it was renamed. Tests:
// tests/resources/resource_file_test.cc; tests/cli/split_test.py.
#ifndef QUILLMARK_PLATFORM_FILES_TEMPORARY_FILE_H_
#define QUILLMARK_PLATFORM_FILES_TEMPORARY_FILE_H_

#include <filesystem>
#include <string>

#include "platform/byte_reader.h"

namespace quillmark {

// Only the owner may read or write the file until its permissions are changed. A call that fails leaves its
// reason in errno.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool is_open() const { return descriptor_ >= 0; }
  int descriptor() const { return descriptor_; }
  const std::string& path() const { return path_; }

  // Appends all bytes.
  bool Write(Bytes bytes) const;
  // Whether everything has reached the disk.
  bool Sync() const;
  // The file was renamed, so that nothing is left to remove.
  void WasRenamed() { is_there_ = false; }

 private:
  std::string path_;
  int descriptor_;
  bool is_there_ = true;
};

}  // namespace quillmark

#endif
