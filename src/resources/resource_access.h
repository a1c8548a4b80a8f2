// Plain functions over a resource file that may be null: each then returns its failure value, so that a font
// without a resource fork goes through the same steps as one with it. Handles are as in
// quillmark_resource_file.h. Tests: tests/resources/resource_file_test.cc.
#ifndef QUILLMARK_RESOURCES_RESOURCE_ACCESS_H_
#define QUILLMARK_RESOURCES_RESOURCE_ACCESS_H_

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/core_foundation/cf_ref.h"
#include "platform/resource_manager/resource_manager.h"
#include "resources/resource_handle.h"

namespace quillmark {

class QuillmarkResourceFile;
struct MapFaults;

// Null when neither fork holds a resource map, and for a path that is not UTF-8. The caller frees it.
// `faults` (may be null) receives why forks are no maps.
QuillmarkResourceFile* AllocateResourceFile(CFStringRef path, bool readOnly);
QuillmarkResourceFile* AllocateResourceFile(FontFile& file, bool readOnly, MapFaults* faults = nullptr);
void FreeResourceFile(QuillmarkResourceFile* file);

int countResType(QuillmarkResourceFile* file, ResType type);
Handle getHandleOfTypeAndResID(QuillmarkResourceFile* file, ResType type, std::int16_t id);
Handle getHandleOfTypeAndIndex(QuillmarkResourceFile* file, ResType type, std::int16_t index);  // from 1

bool FileHasPOSTsInResourceFork(QuillmarkResourceFile* file);
bool FileHasFONDsInResourceFork(QuillmarkResourceFile* file);
bool is_psfont(QuillmarkResourceFile* file);         // holds bitmaps that accompany PostScript printer fonts
bool is_psprinterfont(QuillmarkResourceFile* file);  // holds the first segment of a PostScript printer font
bool hasValidResourcePSHeader(QuillmarkResourceFile* file);  // its first `sfnt` is "typ1"
// Tests on an `sfnt` resource (empty when missing), and on the stored name of its family.
bool has_OTTO_Flag_inResource(Bytes outline);
// Despite its name, tests for TrueType outlines.
bool has_ttc_true_Flag(Bytes outline, std::string_view family_name);

// Owner of one reference to a resource file.
struct ReleaseResourceFile {
  void operator()(QuillmarkResourceFile* file) const { FreeResourceFile(file); }
};
using ResourceFileHolder = std::unique_ptr<QuillmarkResourceFile, ReleaseResourceFile>;

}  // namespace quillmark

#endif
