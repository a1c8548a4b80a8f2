// LibraryDetails: what the lists of `quillmark same` show of a face and its file may not tell: its size.
// Looked up when it is first needed, since few faces of a library appear in lists. Tests:
// tests/cli/same_test.py.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_DETAILS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_DETAILS_H_

#include <cstdint>
#include <string>
#include <unordered_map>

#include "library/library.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {

// Bytes in both forks of a file; 0 when it is gone.
std::uint64_t ReadFileSize(const std::string& path, const FileSystem& system = SystemFiles());

// The library must be finished and outlive it. For one thread at a time.
class LibraryDetails {
 public:
  explicit LibraryDetails(const Library& library) : library_(library) {}

  const Library& library() const { return library_; }
  // Bytes in both forks of the face's file; 0 when it is gone.
  std::uint64_t FileSize(const LibraryFace& face);

 private:
  const Library& library_;
  std::unordered_map<std::size_t, std::uint64_t> sizes_;  // by index of the file
};

}  // namespace quillmark::tool

#endif
