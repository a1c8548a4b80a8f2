#include "api/resource_font_faces.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/face_checksums.h"
#include "analysis/face_collector.h"
#include "analysis/name_table.h"
#include "api/duplicate_filter.h"
#include "api/face_classes.h"
#include "api/requested_outputs.h"
#include "platform/forks.h"
#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr ResType kFondType = FourCharCode("FOND");

// Sizes are kept as 32-bit numbers: a larger one loses its upper bits.
std::uint32_t FileSize(const OmString& path) {
  return static_cast<std::uint32_t>(TotalForkLength(path.str()));
}

// What of a FOND's name the PostScript names of its faces can depend on: of other names nothing but whether
// they tell a CID-keyed family.
std::string MarksOf(const std::string& name) {
  if (name.find("MM") != std::string::npos || name.find("%M") != std::string::npos) return name;
  return IsCidFamilyName(name) ? "CID" : "";
}

// One walk over the faces of one file.
class ResourceFontReader {
 public:
  ResourceFontReader(const OmString& path, std::uint32_t request, QM_FontArray& faces)
      : path_(path),
        request_(request),
        faces_(faces),
        file_(OpenResourceFile(path)),
        classes_(file_.get()),
        codes_(ReadFinderInfo(path.str())) {}

  void ReadFaces() {
    // Counts are signed 16-bit numbers. A file without a FOND gets one pass with none.
    const auto fond_count = static_cast<std::int16_t>(countResType(file_.get(), kFondType));
    for (int i = 1; i <= fond_count || (fond_count == 0 && i == 1); ++i) {
      const ResourceHandle fond(
          getHandleOfTypeAndIndex(file_.get(), kFondType, static_cast<std::int16_t>(i)));
      ReadFondOnce(fond.get());
    }
  }

 private:
  // A FOND by all that the names, styles and resource IDs of its faces depend on.
  using FondIdentity = std::pair<ResourcePlace, std::string>;
  struct Pass {
    std::size_t names_before;              // how many the filter knew when it began
    std::size_t printer_files_before;      // and how many file names the resource file
    std::optional<FinderInfo> last_codes;  // of the last outline file it met
  };

  static QuillmarkResourceFile* OpenResourceFile(const OmString& path) {
    const CFRef<CFStringRef> cf_path = Adopt(path.GetCFString(kCFStringEncodingUTF8));
    return cf_path ? AllocateResourceFile(cf_path.get(), true) : nullptr;
  }

  // In a hostile map tens of thousands of references name one FOND of tens of thousands of styles. A FOND
  // that comes again is passed over once a pass over it began with all the names that are known: it would
  // give the same faces, and the filter refuses every one of them.
  void ReadFondOnce(Handle fond) {
    const auto place = PlaceOf(fond);
    if (!place) return ReadFond(fond);
    const FondIdentity identity(*place, MarksOf(StoredResourceName(fond).value_or("")));
    const auto known = passes_.find(identity);
    const Pass now{filter_.name_count(), file_.get()->CountKnownPrinterFiles(), {}};
    if (known != passes_.end() && known->second.names_before == now.names_before &&
        known->second.printer_files_before == now.printer_files_before) {
      codes_ = known->second.last_codes.value_or(codes_);
      return;
    }
    last_codes_.reset();
    ReadFond(fond);
    passes_.insert_or_assign(identity, Pass{now.names_before, now.printer_files_before, last_codes_});
  }

  // What came of the first face of a class: where none of its names could be read, none can of the others.
  struct ClassResult {
    bool is_known = false;
    const DuplicateFilter::Group* group = nullptr;  // null when the face was dropped
    std::optional<FinderInfo> codes;                // of its outline file
  };

  void ReadFond(Handle fond) {
    const FondKerningScope kerning(fond);
    const std::vector<FaceClasses::Style>& styles = classes_.StylesOf(fond);
    std::vector<ClassResult> results(classes_.class_count());
    // A signed 16-bit number, too. A FOND without a style gets one pass with none.
    const auto style_count = static_cast<std::int16_t>(static_cast<std::uint16_t>(styles.size()));
    for (std::int16_t i = 0; i < style_count; ++i) {
      const FaceClasses::Style& style = styles[static_cast<std::size_t>(i)];
      ClassResult& result = results[style.face_class];
      if (result.is_known &&
          !(result.group && result.group->HasRoomFor(style.first_resource_id, style.code))) {
        if (result.codes) last_codes_ = codes_ = *result.codes;
      } else {
        result = ReadFace(fond, style.code, style.first_resource_id);
      }
    }
    if (style_count == 0) ReadFace(fond, fond && *fond ? -1 : 0, -1);
  }

  ClassResult ReadFace(Handle fond, std::int16_t style, std::int16_t first_resource_id) {
    QuillmarkResourceFile* const file = file_.get();
    const bool has_fond = fond && *fond;
    ClassResult result;
    result.is_known = true;

    QM_FontSpecifier face;
    face.fileCreator = codes_.creator;
    face.fileType = codes_.type;
    FaceOutputs outputs{.printer_font_path = &face.outlineFileName, .names = RequestedNames(request_, face)};
    if (request_ & QM_ATTRIBUTE_KIND) outputs.kind_name = &face.kind;
    if (request_ & QM_ATTRIBUTE_PLATFORM) outputs.platform = &face.platform;
    const CollectStatus status = CollectMetaData(file, path_, fond, style, outputs);
    if (status != kCollected && status != kPrinterFontMissing) return result;

    face.style = style;
    face.firstResourceID = first_resource_id;
    result.codes = FindOutlineFile(face);  // a face that goes again leaves its codes behind, too
    if (result.codes) last_codes_ = codes_ = *result.codes;
    if (!filter_.MayStay(face, &result.group)) {
      GivePrinterFileName(fond, style);
      return result;
    }
    // This field holds the FOND's kerning checksum, never the kerning table's: hosts compare stored values.
    face.kerningChecksum = has_fond ? GetKestineChecksum(fond, style) : 0;
    const bool is_cross_platform = face.platform == "crossplatform";
    face.checksum = GetOmbreluxChecksum(path_, file, fond, style, is_cross_platform, face.legacyChecksum);
    if (has_fond) {
      ResID id = -1;
      GetResInfo(fond, &id, nullptr, nullptr);
      face.fondResourceID = id;
    }
    face.attributes = request_;
    faces_.push_back(std::move(face));
    return result;
  }

  // A PostScript name keeps the file name that it is given first, also for the FONDs that follow. Summing a
  // face gives it one, so a face that goes again without a checksum does so, too.
  void GivePrinterFileName(Handle fond, std::int16_t style) {
    if (file_.get() != nullptr && file_.get()->shouldHavePrinterFile(fond, style)) {
      static_cast<void>(file_.get()->getPSPrinterNameForFOND(fond, style));
    }
  }

  // Fills in what the outline file says; its codes when it is a file of its own. It is looked at once for all
  // styles in a row that name it.
  std::optional<FinderInfo> FindOutlineFile(QM_FontSpecifier& face) {
    const bool is_own = face.outlineFileName.empty();
    const OmString& path = is_own ? path_ : face.outlineFileName;
    if (!outline_ || outline_->path != path.str()) {
      outline_.emplace(OutlineFile{path.str(), IsRegularFile(path.str()), 0, {}});
      if (outline_->exists) outline_->size = FileSize(path);
      if (outline_->exists) outline_->codes = ReadFinderInfo(path.str());
    }
    if (!outline_->exists) return std::nullopt;
    face.outlineFileSize = outline_->size;
    if (is_own) return std::nullopt;
    face.outlineFileCreator = outline_->codes.creator;
    face.outlineFileType = outline_->codes.type;
    return outline_->codes;
  }

  struct OutlineFile {
    std::string path;
    bool exists;
    std::uint32_t size;
    FinderInfo codes;
  };

  const OmString& path_;
  const std::uint32_t request_;
  QM_FontArray& faces_;
  DuplicateFilter filter_;
  const ResourceFileHolder file_;
  const NameMemoryScope names_;
  FaceClasses classes_;
  // The font file's codes, then those of the last outline file: a face that comes after one with an outline
  // file carries that file's codes as its own. Stored results rely on it.
  FinderInfo codes_;
  std::optional<FinderInfo> last_codes_;  // of the last outline file of this pass
  std::optional<OutlineFile> outline_;    // of the last face
  std::map<FondIdentity, Pass> passes_;
};

}  // namespace

void AppendResourceFontFaces(const OmString& path, std::uint32_t request, QM_FontArray& faces) {
  ResourceFontReader(path, request, faces).ReadFaces();
}

}  // namespace quillmark
