// FaceFault: why a face that a font file lists could not be read. The numbers are those of the file; the
// command-line tool words them (tools/quillmark/reasons/fault_words.h).
#ifndef QUILLMARK_API_FACE_FAULT_H_
#define QUILLMARK_API_FACE_FAULT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "analysis/collection.h"
#include "analysis/name_record.h"

namespace quillmark {

// A face of the same collection has the same table directory, or the same PostScript name.
struct DuplicateFault {
  std::uint32_t face;                 // the earlier one
  std::optional<std::string> shared;  // the name; nothing when the directory is shared
};

// A style of a family has neither a readable outline nor a printer font.
struct StyleFault {
  enum Kind {
    kNoFondData,       // the data of the FOND lie outside the file
    kNoStyles,         // the FOND lists none
    kDamagedOutline,   // the `sfnt` resource `outline` has no names, for the reason in `names`
    kUnknownOutline,   // it is neither a TrueType nor an OpenType font
    kMissingOutline,   // there is no such resource
    kNoPrinterName,    // bitmaps only, and no PostScript name that would lead to a printer font
    kPrinterNamePath,  // the name of the printer font holds a slash
    kNoBitmaps         // printer fonts are looked for only when the file holds bitmaps
  };
  Kind kind = kNoFondData;
  std::int16_t fond_id = 0;
  std::int16_t style = 0;
  std::int16_t outline = 0;
  std::optional<NameFault> names;
};

struct FaceFault {
  std::uint32_t face = 0;  // of a collection, from 0
  std::variant<NameFault, CollectionFault, DuplicateFault, StyleFault> why;
};

}  // namespace quillmark

#endif
