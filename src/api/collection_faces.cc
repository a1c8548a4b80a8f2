#include "api/collection_faces.h"

#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "analysis/checksum.h"
#include "analysis/collection.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "api/requested_outputs.h"

namespace quillmark {
namespace {

// Nothing when the names or the platform cannot be read.
std::optional<QM_FontSpecifier> ReadCollectionFace(const std::vector<char>& face, std::uint32_t request) {
  const Bytes bytes = AsBytes({face.data(), face.size()});
  const SfntData font(bytes);
  QM_FontSpecifier specifier;
  specifier.kind = "TrueType Collection";
  if (!getMetaDataFromNamesTable(font, RequestedNames(request, specifier))) return std::nullopt;
  if (request & QM_ATTRIBUTE_KERNING_CHECKSUM) {
    GetTrueTypeKerningTableChecksum(font, &specifier.kerningChecksum);
  }
  if (!GetPlatformTTF(font, &specifier.platform)) return std::nullopt;
  specifier.checksum = CChecksum::icrc(bytes, specifier.legacyChecksum);
  specifier.attributes = request;
  return specifier;
}

}  // namespace

void AppendCollectionFaces(const std::string& path, std::uint32_t request, QM_FontArray& faces) {
  const TrueTypeCollectionFont collection(path);
  // Beyond the listed faces every index fails, however many the header claims.
  const std::uint32_t count = collection.listedFaceCount();
  std::vector<char> face_bytes;
  std::unordered_set<std::uint32_t> directories;
  for (std::uint32_t face = 0; face < count; ++face) {
    const std::optional<std::uint32_t> directory = collection.directoryOffset(face);
    if (!directory || !directories.insert(*directory).second) continue;
    if (collection.GetDataPtrForFace(face, face_bytes) != kCollectionOk) continue;
    if (auto specifier = ReadCollectionFace(face_bytes, request)) faces.push_back(std::move(*specifier));
  }
}

}  // namespace quillmark
