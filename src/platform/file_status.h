// What stat says of a path, without opening it: a device or FIFO must not be opened even for a moment.
// Tests: tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FILE_STATUS_H_
#define QUILLMARK_PLATFORM_FILE_STATUS_H_

#include <cstdint>
#include <string>

namespace quillmark {

struct FileStatus {
  int error = 0;  // errno of stat; 0 when something exists at the path
  bool regular = false;
  bool directory = false;
  std::uint64_t size = 0;  // bytes, of a regular file
};

// Symbolic links are followed. A path with a zero byte names nothing.
FileStatus StatFile(const std::string& path);
// The same, remembered inside a ForkLookupScope.
FileStatus StatusOf(const std::string& path);

}  // namespace quillmark

#endif
