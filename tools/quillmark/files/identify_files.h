// The work that identify, same and why share: identifies all files that a command's paths stand for, shows
// the progress, reports faults as they occur, and ends early on an interrupt. Tests:
// tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_FILES_IDENTIFY_FILES_H_
#define QUILLMARK_TOOL_FILES_IDENTIFY_FILES_H_

#include <cstddef>
#include <functional>
#include <map>
#include <string>

#include "files/collect.h"
#include "files/font_paths.h"
#include "files/progress.h"

namespace quillmark::tool {

struct FilesOptions {
  PathSources sources;
  unsigned jobs = 1;
  std::string progress = "auto";  // or always, never
  bool quiet = false;
  bool why = false;  // report every file that gives no face, or fewer than it lists
  FaceNeeds needs;
};

// Counts of files in folders that are no faults of the run, by what became of them.
using FileCounts = std::map<Outcome, std::size_t>;

struct FilesOutcome {
  FileCounts counts;
  bool complete = true;  // whether every file could be read and every named one gave all its faces
  std::string stopped;   // how far the work got before an interrupt; empty without one
};

bool ShowsProgress(const FilesOptions& options);

// Calls `visit` with each path, in order. `visit` calls Progress::Clear before it writes to the terminal.
// Returns FilesOutcome::stopped.
std::string VisitFiles(const FilesOptions& options,
                       const std::function<void(IdentifiedFile&, Progress&)>& visit);

// Calls `consume`, which may take the faces, with each file that gave some, in the order of the paths. When
// it writes to standard output at once, the progress is taken off a terminal before.
FilesOutcome IdentifyFiles(const FilesOptions& options, bool writes_at_once,
                           const std::function<void(IdentifiedFile&)>& consume);

// What a line says of a file that gives no face, or fewer than it lists.
std::string LineOf(const IdentifiedFile& file);

// "12,345"
std::string Grouped(std::size_t count);

// "12,345 files", "1 file"
std::string Counted(std::size_t count, const std::string& thing);

// "1 face in 1 file"
std::string FacesInFiles(std::size_t faces, std::size_t files);

// "; 4 damaged, 2 other files passed over", and how to learn more of lost fonts; nothing for none.
std::string Losses(FileCounts counts, const FilesOptions& options);

}  // namespace quillmark::tool

#endif
