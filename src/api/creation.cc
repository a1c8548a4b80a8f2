#include "api/creation.h"

#include <utility>

#include "analysis/font_extension.h"
#include "quillmark/quillmark.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

// Keeps what tells why a file gives no face.
void KeepResources(Creation& creation, QuillmarkResourceFile* resources) {
  CreationResult& result = creation.result;
  if (result.map_faults.resource_fork) result.damaged_fork = creation.file.ResourceFork()->where;
  if (resources == nullptr) return;
  const ResourceMap& map = resources->map();
  ListedResources& listed = result.resources.emplace();
  listed.in_data_fork = resources->isDataFork();
  listed.fonds = map.CountResources(kFond);
  listed.posts = map.CountResources(kPost);
  listed.outlines = map.CountResources(kSfnt);
  if (listed.fonds > 0 || listed.posts > 0) return;
  for (std::size_t i = 0; const auto type = map.TypeAt(i); ++i) listed.types.push_back(*type);
}

// A resource file is recognised by its FONDs, or by the POST resources of a printer font.
void AddFileFaces(Creation& creation) {
  const ResourceFileHolder resources(AllocateResourceFile(creation.file, true, &creation.result.map_faults));
  KeepResources(creation, resources.get());
  // The number of FONDs is a signed 16-bit one: with a negative one there is no face at all.
  const int fond_count = countResType(resources.get(), kFond);
  if (fond_count != 0 || FileHasPOSTsInResourceFork(resources.get())) {
    AddFamilyFaces(creation, *resources.get(), fond_count);
  } else {
    AddFontFileFace(creation, resources.get());
  }
}

}  // namespace

CreationResult CreateFaces(const FileSystem& system, const std::string& path, std::uint32_t request) {
  CreationResult result;
  Creation creation(system, path, request, result);
  try {
    if (fontTypeFromExtension(path.c_str()) == kExtensionTtc) {
      AddCollectionFaces(creation);
    } else {
      AddFileFaces(creation);
    }
  } catch (const BudgetSpent&) {
    result.spent_on = creation.budget.most_work();  // the face under way is dropped
  }
  result.charged_steps = creation.budget.charged();
  result.faces.RemoveDups();
  return result;
}

}  // namespace quillmark

std::int32_t QM_CreateSpecifier(const char* path, std::int32_t, std::uint32_t request,
                                QM_FontArray** outArray) {
  if (!path || !outArray) return QM_STATUS_FAILED;
  quillmark::CreationResult result = quillmark::CreateFaces(quillmark::SystemFiles(), path, request);
  if (result.faces.size() == 0) return QM_STATUS_FAILED;
  *outArray = new QM_FontArray(std::move(result.faces));
  return QM_STATUS_OK;
}
