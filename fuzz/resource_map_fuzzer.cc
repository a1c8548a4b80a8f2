// The input is a data-fork font file: its map is opened, and everything that reads FOND records, resources
// and names out of it is run, as far as a bounded number of families and styles goes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "platform/cf_ref.h"
#include "platform/resource_manager.h"
#include "resources/printer_font_name.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "scratch_file.h"

namespace quillmark {
namespace {

constexpr int kFewTypes = 16;
constexpr int kFewResources = 64;
constexpr std::size_t kFewFonds = 8;
constexpr std::size_t kFewStyles = 16;
constexpr ResType kFond = FourCharCode("FOND");

void ReadResources(QuillmarkResourceFile* file) {
  const int types = std::min(file->count1ResTypes(), kFewTypes);
  for (int t = 0; t <= types + 1; ++t) {
    ResType type = 0;
    file->getResourceTypeViaGet1IndType(&type, t);
    const int count = std::min(countResType(file, type), kFewResources);
    for (int i = 0; i <= count + 1; ++i) {
      const ResourceHandle resource(getHandleOfTypeAndIndex(file, type, static_cast<std::int16_t>(i)));
    }
  }
  FileHasPOSTsInResourceFork(file);
  FileHasFONDsInResourceFork(file);
  is_psfont(file);
  is_psprinterfont(file);
  hasValidResourcePSHeader(file);
}

void ReadStyle(QuillmarkResourceFile* file, Handle fond, std::int16_t style) {
  getFirstResourceIDFromHandleAndStyle(file, fond, style);
  has_OTTO_Flag_inResource(file, fond, style);
  has_ttc_true_Flag(file, fond, style);
  getSortedResIDsForStyle(file, fond, style);
  file->styleExists(style, fond);
  file->shouldHavePrinterFile(fond, style);
  const std::string name = file->getPostScriptNameForFOND(fond, style);
  const std::string file_name = file->getPSPrinterNameForFOND(fond, style);
  if (name.size() > 255 || file_name.size() > 255) std::abort();
  bool is_mm = (style & 1) != 0;
  file->normalizePostScriptName(name, fond, &is_mm);
  Adopt(CreatePrinterPath(file, fond, style));
  for (const std::int32_t limit : {1, 2, 33, 256}) {
    std::vector<unsigned char> out(
        static_cast<std::size_t>(limit));  // exact, so that a sanitizer sees its end
    GetPrinterFontNameFromResource(fond, static_cast<unsigned char>(style), out.data(), limit);
    if (out[0] >= limit) std::abort();
  }
}

void ReadFond(QuillmarkResourceFile* file, Handle fond) {
  file->getStyleOffsetFromFOND(fond);
  file->isDoubleByteFOND(fond);
  file->getResourceNameFromFOND(fond);
  for (const int index : {-1, 0, 1, 32767}) file->getResIDForFOND(fond, index);
  getSortedResIDsForStyle(file, fond, -1);
  const int count = getCountOfUniqueStyles(file, fond);
  for (int i = -1; i <= std::min(count, static_cast<int>(kFewStyles)); ++i) {
    ReadStyle(file, fond, getStyleFromStyleIndex(file, fond, static_cast<std::int16_t>(i)));
  }
}

void ReadAll(QuillmarkResourceFile* file) {
  ReadResources(file);
  const std::vector<std::int16_t> ids = file->getSortedResIDsForType(kFond);
  for (std::size_t i = 0; i < std::min(ids.size(), kFewFonds); ++i) {
    const ResourceHandle fond(file->getResourceHandleForType(kFond, ids[i]));
    ReadFond(file, fond.get());
  }
  ReadFond(file, nullptr);
  if (ids.size() <= kFewFonds) {
    file->getSortedStyles();
    file->getPrinterFiles();
  }
  // Removal from the map in memory; the file was opened for reading and is never written.
  file->purgeResource(FourCharCode("sfnt"), 1);
  file->purgeAllBut({0, 128}, FourCharCode("NFNT"));
  ReadResources(file);
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const quillmark::ScratchFile scratch("dfont");
  scratch.Fill(data, size);
  const quillmark::ResourceFileHolder file(
      quillmark::QuillmarkResourceFile::initWithFile(scratch.path(), true));
  if (file.get()) quillmark::ReadAll(file.get());
  return 0;
}
