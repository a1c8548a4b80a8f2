// Adds the faces of a resource file: one for each style of each of its families (FONDs).
#include <utility>

#include "analysis/checksum.h"
#include "analysis/face_checksums.h"
#include "analysis/face_collector.h"
#include "api/creation_context.h"
#include "quillmark/quillmark.h"
#include "resources/family.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

// One walk over the faces of one file.
class FamilyReader {
 public:
  FamilyReader(Creation& creation, QuillmarkResourceFile& resources)
      : creation_(creation), resources_(resources), codes_(creation.file.Finder()) {}

  void ReadFamily(Handle fond) {
    Family family(&resources_, fond);
    const std::vector<std::int16_t>& styles = family.styles().codes();
    // The count is a signed 16-bit number and may be negative. For a FOND without styles one face is tried.
    const auto count = static_cast<std::int16_t>(static_cast<std::uint16_t>(styles.size()));
    for (std::int16_t i = 0; i < count; ++i) ReadFace(family, styles[static_cast<std::size_t>(i)]);
    if (count == 0) ReadFace(family, family.exists() ? -1 : 0);
  }

 private:
  void ReadFace(Family& family, std::int16_t style) {
    CollectedFace found;
    creation_.budget.Charge(kFaceSteps);
    const CollectStatus status = CollectMetaData(creation_.file.path(), resources_, family, style,
                                                 creation_.request, creation_.printer_fonts, found);
    if (status != kCollected && status != kPrinterFontMissing) {
      return creation_.AddFault({0, WhyNoFace(family, style, found.fault)});
    }

    QM_FontSpecifier face;
    if (creation_.request & QM_ATTRIBUTE_KIND) face.kind = std::move(found.kind_name);
    if (creation_.request & QM_ATTRIBUTE_PLATFORM) face.platform = std::move(found.platform);
    face.has_variation_axes = found.has_variation_axes;
    face.style = style;
    face.firstResourceID = family.getFirstResourceID(style);
    face.fondResourceID = family.exists() ? family.id() : -1;
    face.fileCreator = codes_.creator;
    face.fileType = codes_.type;
    face.outlineFileName = found.printer_font_path;
    DescribeOutlineFile(face);
    // This field holds the FOND's kerning checksum, never the kerning table's: hosts compare stored values.
    if ((creation_.request & QM_ATTRIBUTE_KERNING_CHECKSUM) && family.exists()) {
      face.kerningChecksum = GetKestineChecksum(family, style);
    }
    if (creation_.request & kDataChecksums) {
      const auto checksums =
          GetOmbreluxChecksum(creation_.file, resources_, family, style, creation_.printer_fonts);
      face.checksum = checksums.current;
      face.legacyChecksum = checksums.legacy;
    } else {
      // Makes the name of the style's printer font, as summing does: names of later styles depend on it.
      static_cast<void>(family.PrinterFontPath(style));
    }
    creation_.AddFace(std::move(face), std::move(found.names));
  }

  StyleFault WhyNoFace(const Family& family, std::int16_t style, const std::optional<NameFault>& names) {
    StyleFault fault{StyleFault::kNoFondData, family.id(), style, family.getFirstResourceID(style), names};
    if (!family.has_data()) return fault;
    const ResourceHandle outline(resources_.getResourceHandleForType(kSfnt, fault.outline));
    if (family.styles().codes().empty()) {
      fault.kind = StyleFault::kNoStyles;
    } else if (outline.get() != nullptr) {
      fault.kind = names ? StyleFault::kDamagedOutline : StyleFault::kUnknownOutline;
    } else if (!family.shouldHavePrinterFile(style)) {
      fault.kind = StyleFault::kMissingOutline;
    } else {
      const std::string name = family.getPSPrinterNameForFOND(style);
      fault.kind = name.empty()                          ? StyleFault::kNoPrinterName
                   : name.find('/') != std::string::npos ? StyleFault::kPrinterNamePath
                                                         : StyleFault::kNoBitmaps;
    }
    return fault;
  }

  // Fills in what the outline file says: the printer font, else the font file itself. Sizes are kept as
  // 32-bit numbers: a larger one loses its upper bits.
  void DescribeOutlineFile(QM_FontSpecifier& face) {
    if (face.outlineFileName.empty()) {
      face.outlineFileSize = static_cast<std::uint32_t>(creation_.file.TotalLength());
      return;
    }
    const PrinterFont& printer_font = creation_.printer_fonts.At(face.outlineFileName.str());
    if (!printer_font.is_file) return;
    face.outlineFileSize = static_cast<std::uint32_t>(printer_font.length);
    codes_ = printer_font.codes;
    face.outlineFileCreator = codes_.creator;
    face.outlineFileType = codes_.type;
  }

  static constexpr std::uint64_t kFaceSteps = 256;

  Creation& creation_;
  QuillmarkResourceFile& resources_;
  // The font file's codes, then those of the last outline file: a face that comes after one with an outline
  // file carries that file's codes as its own. Stored results rely on it.
  FinderInfo codes_;
};

}  // namespace

void AddFamilyFaces(Creation& creation, QuillmarkResourceFile& resources, int fond_count) {
  const WorkScope work(&creation.budget, Work::kFamilies);
  FamilyReader reader(creation, resources);
  for (int i = 1; i <= fond_count; ++i) {
    reader.ReadFamily(resources.getResourceHandleViaGet1IndResource(kFond, i));
  }
  if (fond_count == 0) reader.ReadFamily(nullptr);
}

}  // namespace quillmark
