// Plain functions over a resource file that may be null: each then returns its failure value, so that a font
// without a resource fork goes through the same steps as one with it. Handles are as in
// quillmark_resource_file.h. Tests: tests/resources/resource_access_test.cc.
#ifndef QUILLMARK_RESOURCES_RESOURCE_ACCESS_H_
#define QUILLMARK_RESOURCES_RESOURCE_ACCESS_H_

#include <cstdint>
#include <vector>

#include "platform/cf_ref.h"
#include "platform/resource_manager.h"

namespace quillmark {

class QuillmarkResourceFile;

// Null when neither fork holds a resource map. The caller frees it.
QuillmarkResourceFile* AllocateResourceFile(CFStringRef path, bool readOnly);
void FreeResourceFile(QuillmarkResourceFile* file);

int countResType(QuillmarkResourceFile* file, ResType type);
Handle getHandleOfTypeAndResID(QuillmarkResourceFile* file, ResType type, std::int16_t id);
Handle getHandleOfTypeAndIndex(QuillmarkResourceFile* file, ResType type, std::int16_t index);  // from 1

bool FileHasPOSTsInResourceFork(QuillmarkResourceFile* file);
bool FileHasFONDsInResourceFork(QuillmarkResourceFile* file);
bool is_psfont(QuillmarkResourceFile* file);         // holds bitmaps that accompany PostScript printer fonts
bool is_psprinterfont(QuillmarkResourceFile* file);  // holds the first segment of a PostScript printer font
bool hasValidResourcePSHeader(QuillmarkResourceFile* file);  // its first `sfnt` is "typ1"
bool has_OTTO_Flag_inResource(QuillmarkResourceFile* file, Handle fond, std::int16_t style);
bool has_ttc_true_Flag(QuillmarkResourceFile* file, Handle fond, std::int16_t style);

// Resource ID of the first association entry of the style, whatever its size; -1 when there is none.
std::int16_t getFirstResourceIDFromHandleAndStyle(QuillmarkResourceFile* file, Handle fond,
                                                  std::int16_t style);
std::int16_t getStyleFromStyleIndex(QuillmarkResourceFile* file, Handle fond,
                                    std::int16_t index);  // from 0; -1
int getCountOfUniqueStyles(QuillmarkResourceFile* file, Handle fond);
// Distinct, ascending; style -1 stands for every style of the FOND.
std::vector<std::int16_t> getSortedResIDsForStyle(QuillmarkResourceFile* file, Handle fond, int style);

// Path of the printer font file of a style beside the resource file; null when none is there. The caller
// releases it.
CFStringRef CreatePrinterPath(QuillmarkResourceFile* file, Handle fond, int style);

// Owner of one reference to a resource file.
class ResourceFileHolder {
 public:
  explicit ResourceFileHolder(QuillmarkResourceFile* file) : file_(file) {}
  ~ResourceFileHolder() { FreeResourceFile(file_); }
  ResourceFileHolder(const ResourceFileHolder&) = delete;
  ResourceFileHolder& operator=(const ResourceFileHolder&) = delete;
  QuillmarkResourceFile* get() const { return file_; }

 private:
  QuillmarkResourceFile* file_;
};

// Releases a map's resource at the end of its scope.
class ResourceHandle {
 public:
  explicit ResourceHandle(Handle handle) : handle_(handle) {}
  ~ResourceHandle() { ReleaseResource(handle_); }
  ResourceHandle(const ResourceHandle&) = delete;
  ResourceHandle& operator=(const ResourceHandle&) = delete;
  Handle get() const { return handle_; }

 private:
  Handle handle_;
};

}  // namespace quillmark

#endif
