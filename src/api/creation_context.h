// What one creation works with, and what comes of it.
#ifndef QUILLMARK_API_CREATION_CONTEXT_H_
#define QUILLMARK_API_CREATION_CONTEXT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/face_names.h"
#include "analysis/printer_font.h"
#include "api/face_fault.h"
#include "api/font_array.h"
#include "platform/files/font_file.h"

namespace quillmark {

struct CreationResult {
  static constexpr std::size_t kMostFaults = 256;  // are kept

  QM_FontArray faces;             // without duplicates
  std::vector<FaceFault> faults;  // in the order in which the file lists the faces
  std::uint32_t lost_faces = 0;   // how many faults there were, but for duplicates
  // Of a collection: how many faces its header claims, and how reading it went.
  std::uint32_t claimed_faces = 0;
  CollectionStatus collection_status = kCollectionOk;
  // The file repeats its bytes so often that the rest was not looked at.
  bool budget_spent = false;
  std::uint64_t charged_steps = 0;  // of the budget
};

// What one creation works with. It owns what it opened and parsed, and drops it at its end.
struct Creation {
  Creation(const FileSystem& system, const std::string& font_path, std::uint32_t attributes,
           CreationResult& target);

  Budget budget;
  FileAccess access;
  FontFile file;                // the font file itself
  const std::uint32_t request;  // QM_Attribute bits
  PrinterFonts printer_fonts;
  CreationResult& result;

  // Appends a face that is complete; the names that the request does not ask for are left out.
  void AddFace(QM_FontSpecifier specifier, FaceNames names);
  // Keeps what stands against a face; of a file with very many only the first.
  void AddFault(FaceFault fault);
};

}  // namespace quillmark

#endif
