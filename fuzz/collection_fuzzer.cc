// The input as a collection: every face that is cut out must be smaller than it and hold its tables.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "analysis/collection.h"
#include "analysis/name_table.h"
#include "scratch_file.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kMaxFaces = 32;  // of one input

// Each entry of the face's own directory must lie inside the face.
void CheckFace(Bytes face) {
  const std::size_t count = U16At(face, 4).value_or(0);
  for (std::size_t entry = 12; entry < 12 + 16 * count; entry += 16) {
    const auto offset = U32At(face, entry + 8);
    const auto length = U32At(face, entry + 12);
    if (!offset || !length || !Slice(face, *offset, *length)) std::abort();
  }
  getPostScriptNameFromNamesTable(SfntData(face));
}

void Check(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("ttc");
  scratch.Fill(data, size);
  FileAccess access;
  FontFile file(access, scratch.path());
  const TrueTypeCollectionFont collection(file);
  std::vector<char> face;
  const std::uint32_t listed = collection.listedFaceCount();
  for (std::uint32_t i = 0; i < std::min(listed, kMaxFaces); ++i) {
    const CollectionStatus status = collection.GetDataPtrForFace(i, face);
    if (face.empty() != (status != kCollectionOk) || (!face.empty() && face.size() >= size)) std::abort();
    if (status == kCollectionOk) CheckFace(AsBytes({face.data(), face.size()}));
  }
  const CollectionStatus beyond = collection.GetDataPtrForFace(listed, face);
  if (beyond != (listed < collection.faceCount() ? kCollectionOutOfBounds : kCollectionNoFace)) std::abort();
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillmark::Check(data, size);
  return 0;
}
