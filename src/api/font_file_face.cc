// Adds the one face of a file whose font is in its data fork: TrueType, OpenType, or a file without
// resources.
#include <utility>

#include "analysis/checksum.h"
#include "analysis/face_checksums.h"
#include "analysis/face_collector.h"
#include "analysis/font_kind.h"
#include "api/creation_context.h"

namespace quillmark {
namespace {

CollectStatus Collect(Creation& creation, QuillmarkResourceFile* resources, CollectedFace& found) {
  const std::string& path = creation.file.path();
  if (path.size() <= kLongestFontPath) {
    return CollectMetaData(creation.file, resources, creation.request, found);
  }
  FontFile file(creation.access, path.substr(0, kLongestFontPath));
  return CollectMetaData(file, resources, creation.request, found);
}

}  // namespace

void AddFontFileFace(Creation& creation, QuillmarkResourceFile* resources) {
  CollectedFace found;
  if (Collect(creation, resources, found) != kCollected) {
    if (found.fault) creation.AddFault({0, *found.fault});
    return;
  }
  QM_FontSpecifier face;
  if (creation.request & QM_ATTRIBUTE_KIND) face.kind = std::move(found.kind_name);
  if (creation.request & QM_ATTRIBUTE_PLATFORM) face.platform = std::move(found.platform);
  face.has_variation_axes = found.has_variation_axes;
  face.style = 0;
  face.fileType = creation.file.Finder().type;
  face.fileCreator = creation.file.Finder().creator;
  // Sizes are kept as 32-bit numbers: a larger one loses its upper bits.
  face.outlineFileSize = static_cast<std::uint32_t>(creation.file.TotalLength());
  if (creation.request & kDataChecksums) {
    const auto checksums = GetOmbreluxChecksum(creation.file, face.platform == "crossplatform");
    face.checksum = checksums.current;
    face.legacyChecksum = checksums.legacy;
  }
  creation.AddFace(std::move(face), std::move(found.names));
}

}  // namespace quillmark
