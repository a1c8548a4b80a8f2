#include "analysis/font_data.h"

#include <algorithm>
#include <limits>

#include "analysis/sfnt_directory.h"
#include "resources/resource_access.h"
#include "support/pascal_string.h"

namespace quillmark {
namespace {

constexpr ResType kSfntType = FourCharCode("sfnt");
constexpr const char* kLayoutTables[] = {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE"};

// A detached `sfnt` resource outlives the closing of its file.
void LoadFromResource(TFontData& font, Handle fond, std::int16_t style) {
  const std::int16_t id = getFirstResourceIDFromHandleAndStyle(font.resourceFile, fond, style);
  const Handle handle = getHandleOfTypeAndResID(font.resourceFile, kSfntType, id);
  if (handle == nullptr) return;
  font.resourcePlace = PlaceOf(handle);
  DetachResource(handle);
  font.resourceHandle = handle;
  font.data.emplace(HandleBytes(handle));
}

void LoadFromFile(TFontData& font) {
  const std::uint64_t size = font.stream->size();
  if (size == 0 || size >= std::numeric_limits<std::uint32_t>::max()) return;
  font.data.emplace(*font.stream, static_cast<std::uint32_t>(size));
}

}  // namespace

TFontData::~TFontData() { freeFontInfo(*this); }

void initializeAndConstructFontInfo(TFontData& font, QuillmarkResourceFile* resourceFile,
                                    const OmString& path) {
  freeFontInfo(font);
  font.filePath = path;
  strncpyNULLTerminate(font.pathBytes, path.c_str(), sizeof font.pathBytes);
  font.hasResourceFonts = resourceFile != nullptr && (FileHasFONDsInResourceFork(resourceFile) ||
                                                      FileHasPOSTsInResourceFork(resourceFile));
  if (font.hasResourceFonts) {
    font.resourceFile = resourceFile;
  } else {
    font.stream = RegularFile::Open(font.pathBytes);
  }
}

int loadFontDataIntoMemory(TFontData& font, Handle fond, std::int16_t style) {
  return font.fontKind <= kKindOpenTypePS ? loadTTFontData(font, fond, style) : 0;
}

int loadTTFontData(TFontData& font, Handle fond, std::int16_t style) {
  if (font.hasResourceFonts || font.extensionType == kExtensionDfont) LoadFromResource(font, fond, style);
  if (!font.data && font.stream) LoadFromFile(font);
  if (!font.hasResourceFonts && font.fontKind == kKindTrueType && font.data) {
    const bool has_layout =
        std::any_of(std::begin(kLayoutTables), std::end(kLayoutTables),
                    [&](const char* tag) { return FindSpecifiedTable(*font.data, tag).has_value(); });
    if (has_layout) font.fontKind = kKindOpenTypeTT;
  }
  return 0;
}

void freeFontInfo(TFontData& font) {
  font.hasResourceFonts = false;
  font.extensionType = kExtensionOther;
  font.fontKind = kKindUnknown;
  font.stream.reset();
  font.data.reset();
  if (font.resourceHandle != nullptr) DisposeHandle(font.resourceHandle);
  font.resourceHandle = nullptr;
  font.resourcePlace.reset();
  font.resourceFile = nullptr;
}

}  // namespace quillmark
