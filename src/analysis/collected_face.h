// CollectedFace: what is read of one face out of its font data, and CollectStatus: whether it could be read
// (face_collector.h, postscript_metadata.h).
#ifndef QUILLMARK_ANALYSIS_COLLECTED_FACE_H_
#define QUILLMARK_ANALYSIS_COLLECTED_FACE_H_

#include <cstdint>
#include <optional>
#include <string>

#include "analysis/name_record.h"
#include "support/om_string.h"

namespace quillmark {

enum CollectStatus : int {
  kCollected = 0,
  kNoFontData = 3,          // no sfnt bytes, or no usable name table
  kPrinterFontMissing = 6,  // the outlines of a PostScript face are not where its family names them
  // Two failures with one number: no caller tells them apart.
  kPlatformUndecided = -1,   // the font is too short to decide its platform
  kNoPostScriptHeader = -1,  // no PostScript header was read
};

// A request beside the QM_Attribute bits: whether the outlines have a table of variation axes (fvar).
inline constexpr std::uint32_t kVariationAxes = 0x8000'0000;

// The names of one face, as read from its font data. The request decides which of them the face keeps
// (Creation::AddFace).
struct FaceNames {
  OmString foundry;  // the maker's text as the font has it: manufacturer, notice or copyright
  OmString family;
  OmString version;
  OmString post_script_name;
  OmString display_name;
  OmString full_name;
  OmString windows_full_name;
};

struct CollectedFace {
  FaceNames names;
  OmString kind_name;
  OmString platform;  // "mac" or "crossplatform"
  bool has_variation_axes = false;
  std::string printer_font_path;   // of PostScript faces only; empty when the family names none
  std::optional<NameFault> fault;  // why the name table gives no names
};

}  // namespace quillmark

#endif
