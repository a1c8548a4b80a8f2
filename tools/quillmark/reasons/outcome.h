// What became of a file that was looked at for fonts, as a kind for counting and as a sentence for people.
#ifndef QUILLMARK_TOOL_REASONS_OUTCOME_H_
#define QUILLMARK_TOOL_REASONS_OUTCOME_H_

#include <cstdint>
#include <optional>
#include <string>

namespace quillmark::tool {

enum class Outcome {
  kFaces,            // gave every face that it lists, but for faces that are the same
  kIncomplete,       // gave faces, and lists more that cannot be read
  kDamaged,          // claims to be a font that is read, and gave no face
  kLonePrinterFont,  // outlines that no font family file leads to
  kDanglingLink,     // a link to nothing, or to itself
  kFolder,           // of those in a folder only linked ones are told so, when they are not entered
  kOther,            // no font, or a sound one that is not read as it is
  kUnreadable,       // could not be opened or read
};

struct Explanation {
  Outcome outcome = Outcome::kFaces;
  // Why it gave no face, or fewer than it lists; empty when it gave all. No line end, no path in front.
  std::string reason;
  std::optional<std::uint32_t> listed = std::nullopt;  // faces that a collection states
};

}  // namespace quillmark::tool

#endif
