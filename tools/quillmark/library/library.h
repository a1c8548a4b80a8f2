// Library: the faces of a library of fonts, and which of them have the same data. Holds a few texts for each
// face and no font data.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_H_

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "faces/face.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {

struct LibraryFace {
  std::size_t file = 0;     // index of Library::files()
  std::uint32_t index = 0;  // in its file
  std::string post_script_name, kind, version, foundry;
  std::int32_t fond_id = -1, style = 0;  // fond_id: -1 without a FOND; style then as in QM_FontSpecifier
  std::uint32_t checksum = 0;
  std::uint64_t bytes = 0;  // of the data that the checksum is of; 0 when not known
  // Equal for faces with the same name and data; kUnknownData without a checksum.
  std::size_t data = 0;
  bool is_variable = false;  // has variation axes
};

struct LibraryFile {
  std::string path;
  std::vector<LibraryFace> faces;
  std::uint64_t size = 0;  // bytes in both forks, where they are known; else 0
};

// Bytes in both forks of the file that these faces are of, as they tell; 0 when none of them does.
std::uint64_t SizeOfFile(const std::vector<Face>& faces);

// Bytes in both forks of a file; 0 when it is gone.
std::uint64_t ReadFileSize(const std::string& path, const FileSystem& system = SystemFiles());

struct LibraryCounts {
  std::size_t faces = 0;
  std::size_t nameless = 0;               // faces without a PostScript name
  std::size_t names_without_letters = 0;  // faces whose name holds neither letter nor digit
};

// Whether a name can identify a font: names such as "-" or "..." occur in many unrelated fonts. A letter or
// digit of any script; bytes of no character may stand for one.
bool HoldsLetterOrDigit(const std::string& name);

// A key that is equal for two paths of one file.
std::string FileIdentity(const std::string& path);

// The size of the data that the checksum of a face covers, whose file has a data fork of that size; 0 when
// not known.
std::uint64_t CheckedBytes(const Face& face, std::int32_t fond_id, std::uint64_t data_fork_size);

constexpr std::size_t kUnknownData = static_cast<std::size_t>(-1);

class Library {
 public:
  // Adds the faces of one file. A further path of a file that was added before is only counted.
  void Add(const std::string& path, const std::vector<Face>& faces, const QM_FontArray& array);
  // The same of a file that is not looked at: `identity` is equal for paths of one file.
  void Add(LibraryFile file, std::string identity);
  // After the last Add: brings the files into the order of their paths' bytes and tells their data apart.
  void Finish();

  const std::vector<LibraryFile>& files() const { return files_; }
  // Bytes in both forks of the face's file; 0 when it is gone. Where the faces do not tell it, it is looked
  // up here, since few faces of a library appear in lists. For one thread at a time.
  std::uint64_t FileSize(const LibraryFace& face);
  LibraryCounts Count() const;
  std::size_t link_count() const { return link_count_; }

 private:
  void TellDataApart();

  std::vector<LibraryFile> files_;
  std::size_t link_count_ = 0;
  std::unordered_map<std::string, std::size_t> files_by_identity_;  // until Finish
};

}  // namespace quillmark::tool

#endif
