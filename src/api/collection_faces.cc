// Adds the faces of a TrueType Collection. Tests: tests/api/creation_test.cc.
#include <map>
#include <utility>
#include <variant>

#include "analysis/checksum.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "api/creation_context.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// The kerning checksum is the sum of a table, as the directory of a face that is cut out has it.
constexpr std::uint32_t kSums = kDataChecksums | QM_ATTRIBUTE_KERNING_CHECKSUM;

// One walk over the faces of one collection.
class CollectionReader {
 public:
  explicit CollectionReader(Creation& creation)
      : creation_(creation), collection_(creation.file, (creation.request & kSums) != 0) {
    creation_.result.claimed_faces = collection_.faceCount();
    creation_.result.collection_status = collection_.status();
  }

  void ReadFaces() {
    // Faces behind the listed ones all fail, however many the header claims: one fault stands for them.
    const std::uint32_t count = collection_.listedFaceCount();
    for (std::uint32_t face = 0; face < count; ++face) ReadFace(face);
    if (count < collection_.faceCount())
      creation_.AddFault({count, CollectionFault{CollectionFault::kCutList}});
  }

 private:
  void ReadFace(std::uint32_t face) {
    creation_.budget.Charge(Budget::kRecord + 2 * Budget::kInsertion);
    const std::optional<std::uint32_t> offset = collection_.directoryOffset(face);
    if (!offset) return;
    const auto [known, is_new] = face_of_offset_.try_emplace(*offset, face);
    if (!is_new) return creation_.AddFault({face, DuplicateFault{known->second, {}}});
    creation_.budget.Charge(kDirectorySteps);
    CollectionFault fault;
    const auto found = collection_.FindFace(face, &fault);
    if (!found) return creation_.AddFault({face, fault});
    AddFace(face, *found);
  }

  void AddFace(std::uint32_t face, const CollectionFace& tables) {
    const SfntData font = collection_.FontOf(tables);
    auto read = getMetaDataFromNamesTable(font);
    if (const auto* fault = std::get_if<NameFault>(&read)) return creation_.AddFault({face, *fault});
    auto& names = std::get<FaceNames>(read);
    // The first face of a name is kept; when PostScript names are not requested, all faces count as
    // duplicates of the first.
    const bool has_name = (creation_.request & QM_ATTRIBUTE_POSTSCRIPT_NAME) != 0;
    const std::string name = has_name ? names.post_script_name.str() : std::string();
    const auto first = static_cast<std::uint32_t>(names_.FirstFace(name, face));
    if (first != face) return creation_.AddFault({face, DuplicateFault{first, name}});

    QM_FontSpecifier specifier;
    if (creation_.request & QM_ATTRIBUTE_KERNING_CHECKSUM) {
      GetTrueTypeKerningTableChecksum(font, &specifier.kerningChecksum);
    }
    GetPlatformTTF(font, &specifier.platform);
    specifier.kind = "TrueType Collection";
    if (creation_.request & kVariationAxes) specifier.has_variation_axes = HasVariationAxes(font);
    if (creation_.request & kDataChecksums) specifier.checksum = collection_.ChecksumOf(tables, font);
    creation_.AddFace(std::move(specifier), std::move(names));
  }

  static constexpr std::uint64_t kDirectorySteps = 1024;  // to look at one, beside its tables

  Creation& creation_;
  const TrueTypeCollectionFont collection_;
  std::map<std::uint32_t, std::uint32_t> face_of_offset_;  // faces of one directory are one font
  NamesSeen names_;
};

}  // namespace

void AddCollectionFaces(Creation& creation) {
  const WorkScope work(&creation.budget, Work::kCollection);
  CollectionReader(creation).ReadFaces();
}

}  // namespace quillmark
