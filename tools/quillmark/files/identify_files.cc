#include "files/identify_files.h"

#include <unistd.h>

#include <iostream>
#include <optional>

#include "files/interrupt.h"
#include "files/open_files.h"
#include "reasons/reason.h"
#include "text/printable.h"
#include "text/terminal.h"

namespace quillmark::tool {
namespace {

std::string Stopped(std::size_t done, std::optional<std::size_t> total) {
  return "stopped after " + (total ? Grouped(done) + " of " : "") + Counted(total.value_or(done), "file");
}

// A file that was only found in a folder may be anything, but it must be possible to look at it.
bool IsFault(const IdentifiedFile& file) {
  const Outcome outcome = file.explanation.outcome;
  return outcome == Outcome::kUnreadable || (file.source.named && outcome != Outcome::kFaces);
}

}  // namespace

std::string Grouped(std::size_t count) {
  std::string digits = std::to_string(count);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

std::string Counted(std::size_t count, const std::string& thing) {
  return Grouped(count) + ' ' + thing + (count == 1 ? "" : "s");
}

bool ShowsProgress(const FilesOptions& options) {
  if (options.quiet) return false;
  return options.progress == "always" || (options.progress == "auto" && IsTerminal(STDERR_FILENO));
}

std::string VisitFiles(const FilesOptions& options,
                       const std::function<void(IdentifiedFile&, Progress&)>& visit) {
  NoteInterrupts();
  FontPaths paths(options.sources);
  const PathCount count(options.sources, ShowsProgress(options));
  Progress progress(ShowsProgress(options), [&] { return count.total(); });
  bool input_cut_short = false;
  const auto consume = [&](IdentifiedFile& file) {
    // Before `visit`, which may take the array.
    const bool is_cut = file.source.standard_input_name && !file.array;
    visit(file, progress);
    input_cut_short |= is_cut && Interrupted() != 0;
    progress.Advance();
  };
  SharedReading shared;
  IdentifyAll(paths, JobsThatCanOpenFiles(options.jobs), options.needs, consume, shared);
  return paths.cut_short() || input_cut_short ? Stopped(progress.done(), count.total()) : "";
}

FilesOutcome IdentifyFiles(const FilesOptions& options, bool writes_at_once,
                           const std::function<void(IdentifiedFile&)>& consume) {
  const bool shares_terminal = writes_at_once && IsTerminal(STDOUT_FILENO);
  FilesOutcome outcome;
  outcome.stopped = VisitFiles(options, [&](IdentifiedFile& file, Progress& progress) {
    const Explanation& found = file.explanation;
    const bool is_told = IsFault(file) || (options.why && !found.reason.empty());
    const std::string line = is_told ? LineOf(file) : "";
    if (file.array) {
      if (shares_terminal) progress.Clear();
      consume(file);
    }
    if (is_told) {
      progress.Clear();
      std::cerr << line + '\n';
    }
    if (IsFault(file)) {
      outcome.complete = false;
    } else {
      ++outcome.counts[found.outcome];
    }
  });
  return outcome;
}

std::string LineOf(const IdentifiedFile& file) {
  const bool is_linked_folder = file.explanation.outcome == Outcome::kFolder && !file.source.named;
  return file.source.Shown() + ": " + Told(file.faces.size(), file.explanation) +
         (is_linked_folder ? " (--follow enters it)" : "");
}

std::string FacesInFiles(std::size_t faces, std::size_t files) {
  return Counted(faces, "face") + " in " + Counted(files, "file");
}

std::string Losses(FileCounts counts, const FilesOptions& options) {
  std::string text;
  bool may_be_fonts = false;
  const auto add = [&](std::size_t count, const std::string& part, bool is_font = true) {
    if (count == 0) return;
    text += (text.empty() ? "; " : ", ") + part;
    may_be_fonts |= is_font;
  };
  const auto add_number = [&](Outcome outcome, const std::string& what) {
    add(counts[outcome], Grouped(counts[outcome]) + what);
  };
  const std::size_t forks = counts[Outcome::kLoneFork];
  const std::size_t links = counts[Outcome::kDanglingLink];
  const std::size_t folders = counts[Outcome::kFolder];
  const std::size_t others = counts[Outcome::kOther];
  const PathSources& sources = options.sources;
  add_number(Outcome::kDamaged, " damaged");
  add_number(Outcome::kIncomplete, " incomplete");
  add_number(Outcome::kMisnamed, " with the wrong extension");
  add_number(Outcome::kLonePrinterFont, " Type 1 without a family file");
  add(forks, Counted(forks, "resource fork") + " without " + (forks == 1 ? "its" : "their") + " file");
  add(links, Counted(links, "dangling link"));
  add(folders,
      sources.walk.recurse ? Counted(folders, "linked folder") + " not entered (--follow)"
                           : Counted(folders, "folder") + " not entered (--no-recurse)",
      false);
  add(others, Counted(others, "other file") + " passed over", false);
  if (!may_be_fonts || options.why) return text;
  const bool is_one_folder = sources.paths.size() == 1 && sources.list.empty();
  const std::string folder = is_one_folder ? ShellWord(sources.paths.front()).value_or("FOLDER") : "FOLDER";
  return text + "; quillmark why " + folder + " says more";
}

}  // namespace quillmark::tool
