#include "library/library_details.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "analysis/collection.h"
#include "analysis/sfnt_directory.h"
#include "platform/files/font_file.h"
#include "reasons/resource_faults.h"
#include "resources/family.h"
#include "resources/resource_access.h"

namespace quillmark::tool {
namespace {

// A small file can list millions of faces, each with a long list of tables. Real collections hold some
// dozens.
constexpr std::size_t kMostCollectionFonts = 4096;

bool HasAxes(const SfntData& font) { return FindSpecifiedTable(font, "fvar").has_value(); }

bool HasAxes(const RegularFile& file) {
  const bool fits = file.size() < std::numeric_limits<std::uint32_t>::max();
  return fits && HasAxes(SfntData(file, static_cast<std::uint32_t>(file.size())));
}

// Finds the outlines of a FOND's face as the library does.
bool HasAxes(QuillmarkResourceFile& resources, const LibraryFace& face) {
  const Family family(&resources,
                      getHandleOfTypeAndResID(&resources, kFond, static_cast<ResID>(face.fond_id)));
  const std::int16_t id = family.getFirstResourceID(static_cast<std::int16_t>(face.style));
  const ResourceHandle font(getHandleOfTypeAndResID(&resources, kSfnt, id));
  return HasAxes(SfntData(HandleBytes(font.get())));
}

// The checksums of a collection's variable fonts. The faces of an array are not numbered as in the file.
std::unordered_set<std::uint32_t> VariableFonts(const std::string& path) {
  std::unordered_set<std::uint32_t> checksums;
  std::unordered_set<std::string_view> directories;
  FileAccess access;
  FontFile file(access, path);
  const TrueTypeCollectionFont collection(file);
  const auto count = std::min<std::size_t>(collection.listedFaceCount(), kMostCollectionFonts);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::optional<CollectionFace> face = collection.FindFace(i);
    if (!face || !directories.insert(AsText(face->directory)).second) continue;
    const SfntData font = collection.FontOf(*face);
    if (HasAxes(font)) checksums.insert(collection.ChecksumOf(*face, font));
  }
  return checksums;
}

std::vector<bool> WhichAreVariable(const LibraryFile& file) {
  std::vector<bool> variable;
  if (file.faces.front().kind == "TrueType Collection") {
    const std::unordered_set<std::uint32_t> checksums = VariableFonts(file.path);
    for (const LibraryFace& face : file.faces) variable.push_back(checksums.contains(face.checksum));
  } else if (file.faces.front().fond_id != -1) {
    const ResourceFileHolder resources = OpenResources(file.path);
    for (const LibraryFace& face : file.faces) {
      variable.push_back(resources.get() != nullptr && HasAxes(*resources.get(), face));
    }
  } else {
    const auto opened = RegularFile::Open(file.path);
    variable.assign(file.faces.size(), opened && HasAxes(*opened));
  }
  return variable;
}

}  // namespace

const LibraryDetails::FileDetails& LibraryDetails::DetailsOf(const LibraryFace& face) {
  const auto [found, is_new] = files_.try_emplace(face.file);
  if (is_new) {
    const LibraryFile& file = library_.files()[face.file];
    found->second = {TotalForkLength(file.path), WhichAreVariable(file)};
  }
  return found->second;
}

}  // namespace quillmark::tool
