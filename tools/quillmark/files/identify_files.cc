#include "files/identify_files.h"

#include <unistd.h>

#include <iostream>
#include <optional>

#include "files/interrupt.h"
#include "files/open_files.h"
#include "reasons/reason.h"
#include "text/terminal.h"

namespace quillmark::tool {
namespace {

// "12,345".
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

std::string Stopped(std::size_t done, std::optional<std::size_t> total) {
  return "stopped after " + (total ? Grouped(done) + " of " : "") + Counted(total.value_or(done), "file");
}

void Count(Outcome outcome, LossCounts& counts) {
  switch (outcome) {
    case Outcome::kDamaged:
      ++counts.damaged;
      break;
    case Outcome::kIncomplete:
      ++counts.incomplete;
      break;
    case Outcome::kLonePrinterFont:
      ++counts.lone_printer_fonts;
      break;
    case Outcome::kDanglingLink:
      ++counts.dangling_links;
      break;
    case Outcome::kFolder:
      ++counts.linked_folders;
      break;
    case Outcome::kOther:
      ++counts.other;
      break;
    case Outcome::kFaces:
    case Outcome::kUnreadable:
      break;
  }
}

// A file that was only found in a folder may be anything, but it must be possible to look at it.
bool IsFault(const IdentifiedFile& file) {
  const Outcome outcome = file.explanation.outcome;
  return outcome == Outcome::kUnreadable || (file.source.named && outcome != Outcome::kFaces);
}

}  // namespace

std::string VisitFiles(const FilesOptions& options,
                       const std::function<void(const IdentifiedFile&, Progress&)>& visit) {
  NoteInterrupts();
  FontPaths paths(options.sources);
  const PathCount count(options.sources);
  Progress progress(ShowsProgress(options), [&] { return count.total(); });
  bool input_cut_short = false;
  IdentifyAll(paths, JobsThatCanOpenFiles(options.jobs), [&](const IdentifiedFile& file) {
    visit(file, progress);
    input_cut_short |= file.source.standard_input_name && !file.array && Interrupted() != 0;
    progress.Advance();
  });
  return paths.cut_short() || input_cut_short ? Stopped(progress.done(), count.total()) : "";
}

FilesOutcome IdentifyFiles(const FilesOptions& options, bool writes_at_once,
                           const std::function<void(const IdentifiedFile&)>& consume) {
  const bool shares_terminal = writes_at_once && IsTerminal(STDOUT_FILENO);
  FilesOutcome outcome;
  outcome.stopped = VisitFiles(options, [&](const IdentifiedFile& file, Progress& progress) {
    if (file.array) {
      if (shares_terminal) progress.Clear();
      consume(file);
    }
    const Explanation& found = file.explanation;
    if (IsFault(file) || (options.why && !found.reason.empty())) {
      progress.Clear();
      std::cerr << file.source.Shown() + ": " + Told(file.faces.size(), found) + '\n';
    }
    if (IsFault(file)) {
      outcome.complete = false;
    } else {
      Count(found.outcome, outcome.losses);
    }
  });
  return outcome;
}

std::string FacesInFiles(std::size_t faces, std::size_t files) {
  return Counted(faces, "face") + " in " + Counted(files, "file");
}

std::string Losses(const LossCounts& counts, const FilesOptions& options) {
  std::string text;
  const auto add = [&text](std::size_t count, const std::string& part) {
    if (count > 0) text += (text.empty() ? "; " : ", ") + part;
  };
  add(counts.damaged, Grouped(counts.damaged) + " damaged");
  add(counts.incomplete, Grouped(counts.incomplete) + " incomplete");
  add(counts.lone_printer_fonts, Grouped(counts.lone_printer_fonts) + " Type 1 without a family file");
  add(counts.dangling_links, Counted(counts.dangling_links, "dangling link"));
  add(counts.linked_folders, Counted(counts.linked_folders, "linked folder") + " not entered (--follow)");
  add(counts.other, Counted(counts.other, "other file") + " passed over");
  const bool may_be_fonts =
      counts.damaged + counts.incomplete + counts.lone_printer_fonts + counts.dangling_links > 0;
  if (may_be_fonts && !options.why) text += "; quillmark why FOLDER says more";
  return text;
}

}  // namespace quillmark::tool
