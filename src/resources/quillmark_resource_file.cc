// Opening and closing, counting, reading and removing resources. Which printer fonts a file needs is in
// printer_font_search.cc.
#include "resources/quillmark_resource_file.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "platform/resource_manager/resource_files.h"
#include "resources/resource_handle.h"

namespace quillmark {
namespace {

constexpr std::uint64_t kLookUp =
    4 * Budget::kInsertion;  // of a resource in its map, with a handle made for it

// While an object of this class lives, the data of resources are not loaded.
class ResourceLoadingOff {
 public:
  ResourceLoadingOff() { SetResLoad(false); }
  ~ResourceLoadingOff() { SetResLoad(true); }
  ResourceLoadingOff(const ResourceLoadingOff&) = delete;
  ResourceLoadingOff& operator=(const ResourceLoadingOff&) = delete;
};

Handle NullOnError(Handle resource) { return ResError() == noErr ? resource : nullptr; }

// Removes a resource from its map. A protected one stays in the map: it is then released rather than disposed
// of, so that the map keeps no handle to freed memory.
void RemoveAndDispose(Handle resource) {
  RemoveResource(resource);
  if (ResError() == noErr) {
    DisposeHandle(resource);
  } else {
    ReleaseResource(resource);
  }
}

}  // namespace

std::vector<std::int16_t> SortedIds(std::vector<std::int16_t> ids) {
  std::ranges::sort(ids);
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

QuillmarkResourceFile* QuillmarkResourceFile::initWithFile(const std::string& path, bool readOnly) {
  FileAccess access;
  FontFile file(access, path);
  return initWithFile(file, readOnly);
}

QuillmarkResourceFile* QuillmarkResourceFile::initWithFile(FontFile& file, bool readOnly, MapFaults* faults) {
  const auto release = [](QuillmarkResourceFile* opened) { opened->release(); };
  std::unique_ptr<QuillmarkResourceFile, decltype(release)> opened(
      new QuillmarkResourceFile(file.path(), readOnly, file.budget()));
  FSRef ref;
  if (FSFileMakeRef(file, &ref, nullptr) != noErr) return nullptr;
  opened->ref_num_ = opened->openFileForResourceAccess(ref, faults);
  if (opened->ref_num_ == -1) return nullptr;
  opened->folder_ = std::filesystem::path(opened->path_).parent_path() / "";
  return opened.release();
}

QuillmarkResourceFile::QuillmarkResourceFile(std::string path, bool readOnly, Budget* budget)
    : path_(std::move(path)), read_only_(readOnly), budget_(budget) {}

QuillmarkResourceFile::~QuillmarkResourceFile() {
  deactivate();
  if (ref_num_ != -1 && ref_num_ != 0) CloseResFile(ref_num_);
}

void QuillmarkResourceFile::retain() { ++references_; }

void QuillmarkResourceFile::release() {
  if (--references_ == 0) delete this;
}

ResFileRefNum QuillmarkResourceFile::openFileForResourceAccess(const FSRef& ref, MapFaults* faults) {
  const ResourceLoadingOff no_preload;
  const SInt8 permission = read_only_ ? fsRdPerm : fsRdWrPerm;
  ResFileRefNum ref_num = FSOpenResFile(&ref, permission);
  if (faults != nullptr) faults->resource_fork = ThreadResourceFiles().map_fault;
  if (ref_num == -1) {
    FSOpenResourceFile(&ref, 0, nullptr, permission, &ref_num);
    is_data_fork_ = true;
    if (faults != nullptr) faults->data_fork = ThreadResourceFiles().map_fault;
  }
  return ref_num;
}

const ResourceMap& QuillmarkResourceFile::map() const {
  UseResFile(ref_num_);
  return ThreadResourceFiles().Current()->map();
}

OSStatus QuillmarkResourceFile::activate() {
  FSRef ref;
  const OSStatus status = FSPathMakeRef(AsBytes(path_.c_str()).data(), &ref, nullptr);
  return status != noErr ? status : kATSInvalidFontContainerAccess;
}

OSStatus QuillmarkResourceFile::deactivate() { return noErr; }

int QuillmarkResourceFile::countResType(ResType type) {
  UseResFile(ref_num_);
  const int count = Count1Resources(type);
  return ResError() == noErr ? count : 0;
}

int QuillmarkResourceFile::count1ResTypes() {
  UseResFile(ref_num_);
  const int count = Count1Types();
  return ResError() == noErr ? count : 0;
}

Handle QuillmarkResourceFile::getResourceHandleViaGet1IndResource(ResType type, int resIndex) {
  Charge(budget_, kLookUp);
  UseResFile(ref_num_);
  return NullOnError(Get1IndResource(type, static_cast<std::int16_t>(resIndex)));
}

Handle QuillmarkResourceFile::getResourceHandleForType(ResType type, int resID) {
  Charge(budget_, kLookUp);
  UseResFile(ref_num_);
  return NullOnError(Get1Resource(type, static_cast<ResID>(resID)));
}

void QuillmarkResourceFile::getResourceTypeViaGet1IndType(ResType* type, int resIndex) {
  if (!type) return;
  UseResFile(ref_num_);
  Get1IndType(type, static_cast<std::int16_t>(resIndex));
  if (ResError() != noErr) *type = 0;
}

std::vector<std::int16_t> QuillmarkResourceFile::getSortedResIDsForType(ResType type) {
  const int count = countResType(type);
  std::vector<std::int16_t> ids;
  for (int i = 1; i <= count; ++i) {
    const ResourceHandle resource(getResourceHandleViaGet1IndResource(type, i));
    if (!resource.get()) continue;
    ResID id = 0;
    GetResInfo(resource.get(), &id, nullptr, nullptr);
    if (ResError() == noErr) ids.push_back(id);
  }
  Charge(budget_, ids.size() * Budget::kInsertion);
  return SortedIds(std::move(ids));
}

bool QuillmarkResourceFile::purgeResource(ResType type, int resID) {
  const Handle resource = getResourceHandleForType(type, resID);
  if (!resource || !*resource) return false;
  RemoveAndDispose(resource);
  return true;
}

bool QuillmarkResourceFile::purgeAllBut(const std::set<std::int16_t>& ids, ResType type) {
  UseResFile(ref_num_);
  const ResourceLoadingOff not_needed;
  std::set<std::int16_t> to_keep = ids;
  int count = countResType(type);
  bool changed = false;
  for (int i = 1; i <= count;) {
    const Handle resource = getResourceHandleViaGet1IndResource(type, i);
    ResID id = 0;
    GetResInfo(resource, &id, nullptr, nullptr);  // null is taken and sets resNotFound
    // Each kept ID counts once, so later resources that share it go.
    if (ResError() != noErr || to_keep.erase(id) > 0) {
      ReleaseResource(resource);
      ++i;
      continue;
    }
    RemoveAndDispose(resource);
    // Counted down when the removal failed, too, so that the loop ends.
    --count;
    changed = true;
  }
  return changed;
}

}  // namespace quillmark
