#include "identify_files.h"

#include <unistd.h>

#include <iostream>
#include <optional>

#include "interrupt.h"
#include "progress.h"
#include "reason.h"
#include "terminal.h"

namespace quillmark::tool {
namespace {

std::string Counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

bool ShowsProgress(const FilesOptions& options) {
  if (options.quiet) return false;
  return options.progress == "always" || (options.progress == "auto" && IsTerminal(STDERR_FILENO));
}

std::string Stopped(std::size_t done, std::optional<std::size_t> total) {
  return "stopped after " + (total ? std::to_string(done) + " of " : "") +
         Counted(total.value_or(done), "file");
}

}  // namespace

FilesOutcome IdentifyFiles(const FilesOptions& options, bool writes_at_once,
                           const std::function<void(const IdentifiedFile&)>& consume) {
  NoteInterrupts();
  FontPaths paths(options.sources);
  const PathCount count(options.sources);
  Progress progress(ShowsProgress(options), [&] { return count.total(); });
  const bool shares_terminal = writes_at_once && IsTerminal(STDOUT_FILENO);
  FilesOutcome outcome;

  IdentifyAll(paths, options.jobs, [&](const IdentifiedFile& file) {
    if (file.array) {
      if (shares_terminal) progress.Clear();
      consume(file);
    } else if (!file.reason.empty()) {
      progress.Clear();
      outcome.complete = false;
      std::cerr << ShownPath(file.source.path) + ": " + file.reason + '\n';
    } else {
      ++outcome.passed_over;
    }
    progress.Advance();
  });
  if (paths.cut_short()) outcome.stopped = Stopped(progress.done(), count.total());
  return outcome;
}

std::string FacesInFiles(std::size_t faces, std::size_t files) {
  return Counted(faces, "face") + " in " + Counted(files, "file");
}

std::string PassedOver(std::size_t files) {
  return files == 0 ? "" : "; " + Counted(files, "other file") + " passed over";
}

}  // namespace quillmark::tool
