#include "library/library_details.h"

#include "reasons/opened_font.h"

namespace quillmark::tool {

std::uint64_t ReadFileSize(const std::string& path, const FileSystem& system) {
  return OpenedFont(path, system).file.TotalLength();
}

std::uint64_t LibraryDetails::FileSize(const LibraryFace& face) {
  const LibraryFile& file = library_.files()[face.file];
  if (file.size > 0) return file.size;
  const auto [found, is_new] = sizes_.try_emplace(face.file);
  if (is_new) found->second = ReadFileSize(file.path);
  return found->second;
}

}  // namespace quillmark::tool
