#include "resources/resource_access.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "resources/sorted_ids.h"
#include "support/om_string.h"

namespace quillmark {
namespace {

constexpr ResType kFond = FourCharCode("FOND");
constexpr ResType kNfnt = FourCharCode("NFNT");
constexpr ResType kPost = FourCharCode("POST");
constexpr ResType kSfnt = FourCharCode("sfnt");
constexpr std::int16_t kFirstPrinterFontSegment = 501;
constexpr std::string_view kTrueTypeVersion("\0\1\0\0", 4);

// The `sfnt` of a style; ID -1, which stands for no entry, is asked for like any other.
Handle OutlineOfStyle(QuillmarkResourceFile* file, Handle fond, std::int16_t style) {
  return getHandleOfTypeAndResID(file, kSfnt, getFirstResourceIDFromHandleAndStyle(file, fond, style));
}

}  // namespace

QuillmarkResourceFile* AllocateResourceFile(CFStringRef path, bool readOnly) {
  OmString text;
  return text.Set(path) ? QuillmarkResourceFile::initWithFile(text.str(), readOnly) : nullptr;
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
  if (!file) return false;
  const ResourceHandle segment(file->getResourceHandleForType(kPost, kFirstPrinterFontSegment));
  return segment.get() != nullptr;
}

bool hasValidResourcePSHeader(QuillmarkResourceFile* file) {
  if (!file) return false;
  const ResourceHandle font(file->getResourceHandleViaGet1IndResource(kSfnt, 1));
  return StartsWith(HandleBytes(font.get()), "typ1");
}

bool has_OTTO_Flag_inResource(QuillmarkResourceFile* file, Handle fond, std::int16_t style) {
  if (!file) return false;
  const ResourceHandle font(OutlineOfStyle(file, fond, style));
  return StartsWith(HandleBytes(font.get()), "OTTO");
}

bool has_ttc_true_Flag(QuillmarkResourceFile* file, Handle fond, std::int16_t style) {
  if (!file) return false;
  const ResourceHandle font(OutlineOfStyle(file, fond, style));
  const Bytes bytes = HandleBytes(font.get());
  if (StartsWith(bytes, kTrueTypeVersion)) return true;
  if (!StartsWith(bytes, "true")) return false;
  if (!fond || !*fond) return true;
  // Outlines of this form inside CID families are not TrueType fonts.
  return !IsCidFamilyName(StoredResourceName(fond).value_or(std::string()));
}

std::int16_t getFirstResourceIDFromHandleAndStyle(QuillmarkResourceFile* file, Handle fond,
                                                  std::int16_t style) {
  return file ? file->FirstResIDOfStyle(fond, style).value_or(-1) : std::int16_t{-1};
}

std::int16_t getStyleFromStyleIndex(QuillmarkResourceFile* file, Handle fond, std::int16_t index) {
  if (!file || index < 0) return -1;
  const std::vector<std::int16_t>& styles = file->StylesOf(fond).codes();
  const auto at = static_cast<std::size_t>(index);
  return at < styles.size() ? styles[at] : std::int16_t{-1};
}

int getCountOfUniqueStyles(QuillmarkResourceFile* file, Handle fond) {
  return file ? static_cast<int>(file->StylesOf(fond).codes().size()) : 0;
}

std::vector<std::int16_t> getSortedResIDsForStyle(QuillmarkResourceFile* file, Handle fond, int style) {
  if (!file || !fond) return {};
  if (style != -1) return file->getSortedNFNTsForFOND(fond, style);
  std::vector<std::int16_t> all;
  const FondStyles& styles = file->StylesOf(fond);
  for (const std::int16_t code : styles.codes()) {
    if (code < 0) continue;  // a style from 0x8000, under whose code no IDs are found one by one either
    for (const FondEntry& entry : styles.Of(static_cast<std::uint16_t>(code))) all.push_back(entry.id);
  }
  return SortedIds(std::move(all));
}

CFStringRef CreatePrinterPath(QuillmarkResourceFile* file, Handle fond, int style) {
  if (!file || !file->shouldHavePrinterFile(fond, style)) return nullptr;
  const auto path = file->PathOfPrinterFile(file->getPSPrinterNameForFOND(fond, style));
  if (!path) return nullptr;
  FSRef ref;
  Boolean is_folder = false;
  const auto* const bytes = reinterpret_cast<const UInt8*>(path->c_str());
  if (FSPathMakeRef(bytes, &ref, &is_folder) != noErr || is_folder) return nullptr;
  return CFStringCreateWithCString(kCFAllocatorDefault, path->c_str(), kCFStringEncodingUTF8);
}

}  // namespace quillmark
