#include "faces/variable_faces.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "analysis/collection.h"
#include "analysis/font_extension.h"
#include "analysis/sfnt_directory.h"
#include "resources/family.h"
#include "resources/resource_access.h"

namespace quillmark::tool {
namespace {

// A small file can list millions of faces, each with a long list of tables. Real collections hold some
// dozens.
constexpr std::size_t kMostCollectionFonts = 4096;

bool HasAxes(const SfntData& font) { return FindSpecifiedTable(font, "fvar").has_value(); }

// Finds the outlines of FONDs' faces as the library does.
void FindInFamilies(FontFile& file, const std::vector<OutlinesKey>& faces, std::vector<bool>& variable) {
  const ResourceFileHolder resources(AllocateResourceFile(file, true));
  std::map<std::int32_t, Family> families;  // by FOND ID: a FOND can have thousands of faces
  for (std::size_t i = 0; i < faces.size(); ++i) {
    auto family = families.find(faces[i].fond_id);
    if (family == families.end()) {
      const auto fond = static_cast<ResID>(faces[i].fond_id);
      family = families
                   .try_emplace(faces[i].fond_id, resources.get(),
                                getHandleOfTypeAndResID(resources.get(), kFond, fond))
                   .first;
    }
    const std::int16_t id = family->second.getFirstResourceID(static_cast<std::int16_t>(faces[i].style));
    const ResourceHandle font(getHandleOfTypeAndResID(resources.get(), kSfnt, id));
    variable[i] = HasAxes(SfntData(HandleBytes(font.get()), file.budget()));
  }
}

// By the checksums of the fonts, since the faces of an array are not numbered as in the file.
void FindInCollection(FontFile& file, const std::vector<OutlinesKey>& faces, std::vector<bool>& variable) {
  std::set<std::uint32_t> checksums;
  std::set<std::string_view> directories;
  const TrueTypeCollectionFont collection(file);
  const auto count = std::min<std::size_t>(collection.listedFaceCount(), kMostCollectionFonts);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::optional<CollectionFace> face = collection.FindFace(i);
    if (!face || !directories.insert(AsText(face->directory)).second) continue;
    const SfntData font = collection.FontOf(*face);
    if (HasAxes(font)) checksums.insert(collection.ChecksumOf(*face, font));
  }
  for (std::size_t i = 0; i < faces.size(); ++i) variable[i] = checksums.contains(faces[i].checksum);
}

void FindInFile(FontFile& file, std::vector<bool>& variable) {
  const auto& data = file.Data();
  if (!data || data->size() >= std::numeric_limits<std::uint32_t>::max()) return;
  const SfntData font(*data, static_cast<std::uint32_t>(data->size()), file.budget());
  variable.assign(variable.size(), HasAxes(font));
}

}  // namespace

std::vector<bool> AreVariable(FontFile& file, const std::vector<OutlinesKey>& faces) {
  std::vector<bool> variable(faces.size());
  if (faces.empty()) return variable;
  try {
    if (fontTypeFromExtension(file.path().c_str()) == kExtensionTtc) {
      FindInCollection(file, faces, variable);
    } else if (faces.front().fond_id != -1) {
      FindInFamilies(file, faces, variable);
    } else {
      FindInFile(file, variable);
    }
  } catch (const BudgetSpent&) {
    // The faces that were not reached count as not variable.
  }
  return variable;
}

}  // namespace quillmark::tool
