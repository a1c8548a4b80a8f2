// FileDetails, LibraryDetails: what the lists of `quillmark same` show of a face besides what they compare:
// the size of its file, and whether the font is variable. Read from a file when one of its faces is first
// needed, since few faces of a library appear in lists. Tests: tests/cli/same_test.py.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_DETAILS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_DETAILS_H_

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "library/library.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {

struct FileDetails {
  std::uint64_t file_size = 0;  // bytes in both forks; 0 when it is gone
  std::vector<bool>
      variable;  // whether each face has a table of variation axes; false when it cannot be read
};

// Reads them from a file. Of its faces the kind, FOND, style and checksum are looked at; there is at least
// one. A size that is known, not 0, is not looked up.
FileDetails ReadDetails(const std::string& path, const std::vector<LibraryFace>& faces,
                        std::uint64_t known_size = 0, const FileSystem& system = SystemFiles());

// The library must be finished and outlive it. For one thread at a time.
class LibraryDetails {
 public:
  explicit LibraryDetails(const Library& library) : library_(library) {}

  const Library& library() const { return library_; }
  // Bytes in both forks of the face's file; 0 when it is gone.
  std::uint64_t FileSize(const LibraryFace& face) {
    const std::optional<std::uint64_t>& known = library_.files()[face.file].size;
    return known ? *known : DetailsOf(face).file_size;
  }
  // Whether the font has a table of variation axes. False when it cannot be read any more.
  bool IsVariable(const LibraryFace& face) {
    return face.is_variable ? *face.is_variable : DetailsOf(face).variable[face.index];
  }

 private:
  const FileDetails& DetailsOf(const LibraryFace& face);

  const Library& library_;
  std::unordered_map<std::size_t, FileDetails> files_;  // by index of the file
};

}  // namespace quillmark::tool

#endif
