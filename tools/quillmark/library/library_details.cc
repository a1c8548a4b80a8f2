#include "library/library_details.h"

#include "faces/variable_faces.h"
#include "reasons/opened_font.h"

namespace quillmark::tool {

const LibraryDetails::FileDetails& LibraryDetails::DetailsOf(const LibraryFace& face) {
  const auto [found, is_new] = files_.try_emplace(face.file);
  if (is_new) {
    const LibraryFile& file = library_.files()[face.file];
    std::vector<OutlinesKey> keys;
    for (const LibraryFace& each : file.faces) keys.push_back({each.fond_id, each.style, each.checksum});
    OpenedFont opened(file.path);
    found->second = {opened.file.TotalLength(), AreVariable(opened.file, keys)};
  }
  return found->second;
}

}  // namespace quillmark::tool
