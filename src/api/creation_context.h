// Creation: the state of one creation, handed down by reference; CreationResult: its faces and faults; and
// the three ways of adding faces, a file each.
#ifndef QUILLMARK_API_CREATION_CONTEXT_H_
#define QUILLMARK_API_CREATION_CONTEXT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/collected_face.h"
#include "analysis/printer_font.h"
#include "api/face_fault.h"
#include "api/font_array.h"
#include "platform/files/font_file.h"
#include "resources/quillmark_resource_file.h"

namespace quillmark {

// What the resource map of a font file lists.
struct ListedResources {
  bool in_data_fork = false;  // where the map lies
  std::size_t fonds = 0, posts = 0, outlines = 0;
  std::vector<ResType> types;  // in their order; none of a file with FONDs or POST resources
};

struct CreationResult {
  static constexpr std::size_t kMostFaults = 256;  // further faults are dropped

  QM_FontArray faces;  // without duplicates
  // In the order of the faces in the file; of bitmap-only styles, which are no loss, only one that is first.
  std::vector<FaceFault> faults;
  bool faults_dropped = false;   // there were more than kMostFaults
  std::uint32_t lost_faces = 0;  // number of faults, duplicates not counted
  // Of a collection: how many faces its header claims, and how reading it went.
  std::uint32_t claimed_faces = 0;
  CollectionStatus collection_status = kCollectionOk;
  // Nothing without a resource map, and where none is looked for: of a collection, and of a path that is not
  // UTF-8.
  std::optional<ListedResources> resources;
  MapFaults map_faults;
  std::string damaged_fork;  // where a resource fork that is no map lies: a path or an attribute's name
  // The budget was spent before all faces were read, most of it on this.
  std::optional<Work> spent_on;
  std::uint64_t charged_steps = 0;  // of the budget
};

// Owns the files that one creation opened and what it parsed of them.
struct Creation {
  Creation(const FileSystem& system, const std::string& font_path, std::uint32_t attributes,
           CreationResult& target);

  Budget budget;
  FileAccess access;
  FontFile file;  // the font file itself
  // QM_Attribute bits, kVariationAxes. Without a checksum of the data, files are not read from end to end
  // (collections are for a kerning checksum).
  const std::uint32_t request;
  PrinterFonts printer_fonts;
  CreationResult& result;

  // Appends a complete face, with those of `names` that the request asks for.
  void AddFace(QM_FontSpecifier specifier, FaceNames names);
  // Keeps the fault of a face, up to kMostFaults.
  void AddFault(FaceFault fault);
};

// The three ways, each in the file of its name.
void AddCollectionFaces(Creation& creation);
// For a file without FONDs (fond_count 0) one face without a family is tried.
void AddFamilyFaces(Creation& creation, QuillmarkResourceFile& resources, int fond_count);
// `resources` may be null, and holds neither FOND nor POST resources.
void AddFontFileFace(Creation& creation, QuillmarkResourceFile* resources);

}  // namespace quillmark

#endif
