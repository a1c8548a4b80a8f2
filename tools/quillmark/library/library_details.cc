#include "library/library_details.h"

#include "faces/variable_faces.h"
#include "reasons/opened_font.h"

namespace quillmark::tool {

FileDetails ReadDetails(const std::string& path, const std::vector<LibraryFace>& faces,
                        std::uint64_t known_size, const FileSystem& system) {
  std::vector<OutlinesKey> keys;
  keys.reserve(faces.size());
  for (const LibraryFace& face : faces) keys.push_back({face.fond_id, face.style, face.checksum});
  OpenedFont opened(path, system);
  const std::uint64_t size = known_size > 0 ? known_size : opened.file.TotalLength();
  return {size, AreVariable(opened.file, keys)};
}

const FileDetails& LibraryDetails::DetailsOf(const LibraryFace& face) {
  const auto [found, is_new] = files_.try_emplace(face.file);
  if (is_new) {
    const LibraryFile& file = library_.files()[face.file];
    found->second = ReadDetails(file.path, file.faces);
  }
  return found->second;
}

}  // namespace quillmark::tool
