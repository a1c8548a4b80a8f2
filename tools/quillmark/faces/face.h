// Face: one face as the tool shows it: the values of the exported functions, and two numbers that they do not
// give (style and FOND ID).
#ifndef QUILLMARK_TOOL_FACES_FACE_H_
#define QUILLMARK_TOOL_FACES_FACE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/collected_face.h"
#include "quillmark/quillmark.h"

namespace quillmark::tool {

struct FreeArray {
  void operator()(QM_FontArray* array) const;
};
using FontArray = std::unique_ptr<QM_FontArray, FreeArray>;

struct Face {
  std::string path;         // of the file it was read from
  std::uint32_t index = 0;  // in the file's array, from 0
  std::string post_script_name, family, full_name, display_name, windows_full_name;
  std::string kind, version, platform;
  std::string foundry, classification;  // "--" when unknown
  std::vector<std::string> styles;
  std::uint32_t checksum = 0, legacy_checksum = 0, kerning_checksum = 0;
  std::string outline_file;  // path of the printer font file; empty without one
  bool outline_file_exists = false;
  std::uint32_t outline_file_size = 0;  // bytes
  std::optional<int> style, fond_id;    // of faces of a FOND
  std::optional<bool> variable;         // whether it has variation axes; only where that is asked for
};

// What is to be known of faces. The rest costs nothing and stays empty.
struct FaceNeeds {
  // Which faces there are depends on these: duplicates share a PostScript name, and a font of no platform is
  // left out.
  static constexpr std::uint32_t kAlways = QM_ATTRIBUTE_POSTSCRIPT_NAME | QM_ATTRIBUTE_PLATFORM;

  std::uint32_t attributes = 0;  // QM_Attribute bits, kVariationAxes
  bool styles = false;
  bool classification = false;

  friend FaceNeeds operator|(const FaceNeeds& a, const FaceNeeds& b) {
    return {a.attributes | b.attributes, a.styles || b.styles, a.classification || b.classification};
  }
};
// Of every field that is written unasked.
inline constexpr FaceNeeds kEveryNeed = {QM_ATTRIBUTES_ALL, true, true};

// The styles found in the names of a face.
std::vector<std::string> StylesOf(const std::string& primary_name, const std::string& secondary_name);
// The class of a family, or "--".
std::string ClassOf(const std::string& family, const char* alternate);

// "0000ABCD".
std::string Hex(std::uint32_t value);

}  // namespace quillmark::tool

#endif
