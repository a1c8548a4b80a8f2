#include "api/collection_faces.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>

#include "analysis/collection.h"
#include "analysis/name_content.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "api/requested_outputs.h"

namespace quillmark {
namespace {

// One walk over the faces of one collection.
class CollectionReader {
 public:
  CollectionReader(const TrueTypeCollectionFont& collection, std::uint32_t request, QM_FontArray& faces)
      : collection_(collection), request_(request), faces_(faces), name_contents_(collection.addresses()) {}

  void ReadFaces() {
    // Beyond the listed faces every index fails, however many the header claims.
    const std::uint32_t count = collection_.listedFaceCount();
    for (std::uint32_t face = 0; face < count; ++face) {
      // Without PostScript names all faces are duplicates of the first.
      if (faces_.size() > 0 && !(request_ & QM_ATTRIBUTE_POSTSCRIPT_NAME)) return;
      const std::optional<std::uint32_t> offset = collection_.directoryOffset(face);
      if (!offset || !offsets_.insert(*offset).second) continue;
      const std::optional<CollectionFace> found = collection_.FindFace(face);
      if (found && directories_.insert(AsText(found->directory)).second) ReadFace(*found);
    }
  }

 private:
  void ReadFace(const CollectionFace& face) {
    const SfntData font = collection_.FontOf(face);
    std::optional<QM_FontSpecifier> specifier = ReadNames(font);
    if (!specifier || post_script_names_.contains(specifier->postScriptName.str())) return;
    if (request_ & QM_ATTRIBUTE_KERNING_CHECKSUM) {
      GetTrueTypeKerningTableChecksum(font, &specifier->kerningChecksum);
    }
    if (!GetPlatformTTF(font, &specifier->platform)) return;
    specifier->kind = "TrueType Collection";
    specifier->checksum = collection_.ChecksumOf(face, font);
    specifier->attributes = request_;
    post_script_names_.insert(specifier->postScriptName.str());
    faces_.push_back(std::move(*specifier));
  }

  // A specifier with the names of the font, or nothing when they cannot be read. Those of a name table that
  // comes again are remembered.
  std::optional<QM_FontSpecifier> ReadNames(const SfntData& font) {
    const auto entry = FindSpecifiedTable(font, "name");
    if (!entry) return std::nullopt;
    const auto table = font.Range(entry->offset, entry->length);
    if (!table) return std::nullopt;
    // Reading stops at the end of the font, so what is in a table can depend on whether it is the last.
    const bool is_last = font.size() - entry->offset - entry->length < 4;
    const NameTable key{table->data(), table->size(), is_last};
    if (const auto known = known_names_.find(key); known != known_names_.end()) return known->second;

    std::optional<QM_FontSpecifier> specifier(std::in_place);
    if (!getMetaDataFromNamesTable(font, name_contents_, RequestedNames(request_, *specifier)))
      specifier.reset();
    // Texts that run past their table depend on the tables behind it. An empty table has no place of its own.
    if (!table->empty() && !font.HoldsCopies()) {
      if (known_names_.size() == kMaxKnownNames) known_names_.clear();
      known_names_.emplace(key, specifier);
    }
    return specifier;
  }

  using NameTable = std::tuple<const std::uint8_t*, std::size_t, bool>;
  static constexpr std::size_t kMaxKnownNames = 256;  // of up to some kilobytes each

  const TrueTypeCollectionFont& collection_;
  const std::uint32_t request_;
  QM_FontArray& faces_;
  std::unordered_set<std::uint32_t> offsets_;
  std::unordered_set<std::string_view> directories_;
  std::unordered_set<std::string> post_script_names_;  // of the faces appended
  std::map<NameTable, std::optional<QM_FontSpecifier>> known_names_;
  NameContentMemory name_contents_;
};

}  // namespace

void AppendCollectionFaces(const std::string& path, std::uint32_t request, QM_FontArray& faces) {
  const TrueTypeCollectionFont collection(path);
  CollectionReader(collection, request, faces).ReadFaces();
}

}  // namespace quillmark
