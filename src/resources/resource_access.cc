#include "resources/resource_access.h"

#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "support/om_string.h"

namespace quillmark {

QuillmarkResourceFile* AllocateResourceFile(CFStringRef path, bool readOnly) {
  OmString text;
  return text.Set(path) ? QuillmarkResourceFile::initWithFile(text.str(), readOnly) : nullptr;
}

QuillmarkResourceFile* AllocateResourceFile(FontFile& file, bool readOnly, MapFaults* faults) {
  return QuillmarkResourceFile::initWithFile(file, readOnly, faults);
}

void FreeResourceFile(QuillmarkResourceFile* file) {
  if (file) file->release();
}

int countResType(QuillmarkResourceFile* file, ResType type) { return file ? file->countResType(type) : 0; }

Handle getHandleOfTypeAndResID(QuillmarkResourceFile* file, ResType type, std::int16_t id) {
  return file ? file->getResourceHandleForType(type, id) : nullptr;
}

Handle getHandleOfTypeAndIndex(QuillmarkResourceFile* file, ResType type, std::int16_t index) {
  return file ? file->getResourceHandleViaGet1IndResource(type, index) : nullptr;
}

bool FileHasPOSTsInResourceFork(QuillmarkResourceFile* file) { return countResType(file, kPost) > 0; }

bool FileHasFONDsInResourceFork(QuillmarkResourceFile* file) { return countResType(file, kFond) > 0; }

bool is_psfont(QuillmarkResourceFile* file) { return countResType(file, kNfnt) > 0; }

bool is_psprinterfont(QuillmarkResourceFile* file) {
  constexpr std::int16_t kFirstSegment = 501;
  const ResourceHandle segment(getHandleOfTypeAndResID(file, kPost, kFirstSegment));
  return segment.get() != nullptr;
}

bool hasValidResourcePSHeader(QuillmarkResourceFile* file) {
  const ResourceHandle font(getHandleOfTypeAndIndex(file, kSfnt, 1));
  return StartsWith(HandleBytes(font.get()), "typ1");
}

bool has_OTTO_Flag_inResource(Bytes outline) { return StartsWith(outline, "OTTO"); }

bool has_ttc_true_Flag(Bytes outline, std::string_view family_name) {
  constexpr std::string_view kTrueTypeVersion("\0\1\0\0", 4);
  if (StartsWith(outline, kTrueTypeVersion)) return true;
  // Outlines of this form inside CID families are not TrueType fonts.
  return StartsWith(outline, "true") && !IsCidFamilyName(family_name);
}

}  // namespace quillmark
