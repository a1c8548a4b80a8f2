// The input is a data-fork font file: its map is opened, and everything that reads FOND records, resources
// and names out of it is run, as far as a bounded number of families and styles goes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "platform/resource_manager/resource_manager.h"
#include "resources/family.h"
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
      has_OTTO_Flag_inResource(HandleBytes(resource.get()));
      has_ttc_true_Flag(HandleBytes(resource.get()), "A-CID");
    }
  }
  FileHasPOSTsInResourceFork(file);
  FileHasFONDsInResourceFork(file);
  is_psfont(file);
  is_psprinterfont(file);
  hasValidResourcePSHeader(file);
}

void ReadStyle(Family& family, Bytes record, std::int16_t style) {
  family.getFirstResourceID(style);
  family.FirstOutlineOfStyle(style);
  family.getSortedNFNTsForFOND(style);
  family.styleExists(style);
  family.shouldHavePrinterFile(style);
  family.kerning().SumOfBytes(style);
  family.kerning().CrcOfPairs(style);
  const std::string name = family.getPostScriptNameForFOND(style);
  const std::string file_name = family.getPSPrinterNameForFOND(style);
  if (name.size() > 255 || file_name.size() > 255) std::abort();
  bool is_mm = (style & 1) != 0;
  family.normalizePostScriptName(name, &is_mm);
  for (const std::int32_t limit : {1, 2, 33, 256}) {
    const StyleMapping mapping(record);
    const auto size = mapping.GetPrinterFontName(static_cast<unsigned char>(style), limit).size();
    if (size >= static_cast<std::size_t>(limit)) std::abort();
  }
}

// Takes the FOND over.
void ReadFond(QuillmarkResourceFile* file, Handle fond) {
  Family family(file, fond);
  family.getStyleOffsetFromFOND();
  family.isDoubleByteFOND();
  family.getResourceNameFromFOND();
  for (const int index : {-1, 0, 1, 32767}) family.getResIDForFOND(index);
  ReadStyle(family, HandleBytes(fond), -1);
  const auto& styles = family.styles().codes();
  for (std::size_t i = 0; i < std::min(styles.size(), kFewStyles); ++i) {
    ReadStyle(family, HandleBytes(fond), styles[i]);
  }
}

void ReadAll(QuillmarkResourceFile* file) {
  ReadResources(file);
  const std::vector<std::int16_t> ids = file->getSortedResIDsForType(kFond);
  for (std::size_t i = 0; i < std::min(ids.size(), kFewFonds); ++i) {
    ReadFond(file, file->getResourceHandleForType(kFond, ids[i]));
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
