// The work that identify and same share: all files that a command's paths stand for are identified while a
// line tells how far it is, faults are told as they come, and an interrupt ends it early.
#ifndef QUILLMARK_TOOL_IDENTIFY_FILES_H_
#define QUILLMARK_TOOL_IDENTIFY_FILES_H_

#include <cstddef>
#include <functional>
#include <string>

#include "collect.h"
#include "font_paths.h"

namespace quillmark::tool {

struct FilesOptions {
  PathSources sources;
  unsigned jobs = 1;
  std::string progress = "auto";  // or always, never
  bool quiet = false;
};

struct FilesOutcome {
  std::size_t passed_over = 0;  // files of folders that gave no face
  bool complete = true;         // whether every named path gave a face
  std::string stopped;          // how far the work came when it was interrupted, or else empty
};

// Calls `consume` with each file that gave faces, in the order of the paths. When it writes to standard
// output at once, the progress is taken off a terminal before.
FilesOutcome IdentifyFiles(const FilesOptions& options, bool writes_at_once,
                           const std::function<void(const IdentifiedFile&)>& consume);

// "1 face in 1 file"
std::string FacesInFiles(std::size_t faces, std::size_t files);

// "; 2 other files passed over", or nothing for none.
std::string PassedOver(std::size_t files);

}  // namespace quillmark::tool

#endif
