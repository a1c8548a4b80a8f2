#include "api/resource_font_faces.h"

#include "analysis/face_checksums.h"
#include "analysis/face_collector.h"
#include "api/duplicate_filter.h"
#include "api/requested_outputs.h"
#include "platform/forks.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr ResType kFondType = FourCharCode("FOND");

// Sizes are kept as 32-bit numbers: a larger one loses its upper bits.
std::uint32_t FileSize(const OmString& path) {
  return static_cast<std::uint32_t>(TotalForkLength(path.str()));
}

// One walk over the faces of one file.
class ResourceFontReader {
 public:
  ResourceFontReader(const OmString& path, std::uint32_t request, QM_FontArray& faces)
      : path_(path),
        request_(request),
        faces_(faces),
        file_(OpenResourceFile(path)),
        codes_(ReadFinderInfo(path.str())) {}

  void ReadFaces() {
    // Counts are signed 16-bit numbers. A file without a FOND gets one pass with none, and a FOND without a
    // style one with style index 0.
    const auto fond_count = static_cast<std::int16_t>(countResType(file_.get(), kFondType));
    for (int i = 1; i <= fond_count || (fond_count == 0 && i == 1); ++i) {
      const ResourceHandle fond(
          getHandleOfTypeAndIndex(file_.get(), kFondType, static_cast<std::int16_t>(i)));
      const FondKerningScope kerning(fond.get());
      const auto style_count = static_cast<std::int16_t>(getCountOfUniqueStyles(file_.get(), fond.get()));
      std::int16_t first_resource_id = -1;
      for (int j = 0; j < style_count || (style_count == 0 && j == 0); ++j) {
        ReadFace(fond.get(), static_cast<std::int16_t>(j), first_resource_id);
      }
    }
  }

 private:
  static QuillmarkResourceFile* OpenResourceFile(const OmString& path) {
    const CFRef<CFStringRef> cf_path = Adopt(path.GetCFString(kCFStringEncodingUTF8));
    return cf_path ? AllocateResourceFile(cf_path.get(), true) : nullptr;
  }

  void ReadFace(Handle fond, std::int16_t style_index, std::int16_t& first_resource_id) {
    QuillmarkResourceFile* const file = file_.get();
    const bool has_fond = fond && *fond;
    std::int16_t style = 0;
    std::uint32_t kestine = 0;
    if (has_fond) {
      style = getStyleFromStyleIndex(file, fond, style_index);
      first_resource_id = getFirstResourceIDFromHandleAndStyle(file, fond, style);
      kestine = GetKestineChecksum(fond, style);
    }

    QM_FontSpecifier face;
    face.fileCreator = codes_.creator;
    face.fileType = codes_.type;
    FaceOutputs outputs{.printer_font_path = &face.outlineFileName, .names = RequestedNames(request_, face)};
    if (request_ & QM_ATTRIBUTE_KIND) outputs.kind_name = &face.kind;
    if (request_ & QM_ATTRIBUTE_PLATFORM) outputs.platform = &face.platform;
    const CollectStatus status = CollectMetaData(file, path_, fond, style, outputs);
    if (status != kCollected && status != kPrinterFontMissing) return;

    face.style = style;
    face.firstResourceID = first_resource_id;
    // This field holds the FOND's kerning checksum, never the kerning table's: hosts compare stored values.
    face.kerningChecksum = kestine;
    const bool is_cross_platform = face.platform == "crossplatform";
    face.checksum = GetOmbreluxChecksum(path_, file, fond, style, is_cross_platform, face.legacyChecksum);
    if (has_fond) {
      ResID id = -1;
      GetResInfo(fond, &id, nullptr, nullptr);
      face.fondResourceID = id;
    }
    FindOutlineFile(face);
    face.attributes = request_;
    if (filter_.MayStay(face)) faces_.push_back(std::move(face));
  }

  void FindOutlineFile(QM_FontSpecifier& face) {
    if (face.outlineFileName.empty()) {
      if (IsRegularFile(path_.str())) face.outlineFileSize = FileSize(path_);
    } else if (IsRegularFile(face.outlineFileName.str())) {
      face.outlineFileSize = FileSize(face.outlineFileName);
      codes_ = ReadFinderInfo(face.outlineFileName.str());
      face.outlineFileCreator = codes_.creator;
      face.outlineFileType = codes_.type;
    }
  }

  const OmString& path_;
  const std::uint32_t request_;
  QM_FontArray& faces_;
  DuplicateFilter filter_;
  const ResourceFileHolder file_;
  // The font file's codes, then those of the last outline file: a face that comes after one with an outline
  // file carries that file's codes as its own. Stored results rely on it.
  FinderInfo codes_;
};

}  // namespace

void AppendResourceFontFaces(const OmString& path, std::uint32_t request, QM_FontArray& faces) {
  ResourceFontReader(path, request, faces).ReadFaces();
}

}  // namespace quillmark
