// What became of a file that was looked at for fonts, as a kind for counting and as a sentence for people.
#ifndef QUILLMARK_TOOL_REASONS_OUTCOME_H_
#define QUILLMARK_TOOL_REASONS_OUTCOME_H_

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>

namespace quillmark::tool {

enum class Outcome {
  kFaces,            // gave every face that it lists, except faces that are the same
  kIncomplete,       // gave faces, and lists more that cannot be read
  kDamaged,          // claims to be a font that is read, and gave no face
  kMisnamed,         // a sound font under the extension of another kind that is read
  kLonePrinterFont,  // outlines that no font family file leads to
  kDanglingLink,     // a link to nothing, or to itself
  kFolder,           // a folder: named itself, or a link to one found in a folder and not followed
  kOther,            // no font, or a sound one that is not read as it is
  kLoneFork,         // a resource fork that may hold fonts, kept for a file that is not there
  kUnreadable,       // could not be opened or read
};

// Whether an errno tells that memory or open files ran short.
inline bool IsShortage(int error) { return error == ENOMEM || error == EMFILE || error == ENFILE; }

struct Explanation {
  Outcome outcome = Outcome::kFaces;
  // Why it gave no face, or fewer than it lists; empty when it gave all. No line end, no path in front.
  std::string reason;
  std::optional<std::uint32_t> listed = std::nullopt;  // faces that a collection states
  bool may_pass = false;           // memory or open files may have run short: another try may give more
  bool depends_on_folder = false;  // on what the other files of its folder hold
};

}  // namespace quillmark::tool

#endif
