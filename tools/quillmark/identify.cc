// quillmark identify: every face of the named files and of the files in the named folders.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "collect.h"
#include "commands.h"
#include "font_paths.h"
#include "interrupt.h"
#include "output.h"
#include "progress.h"
#include "reason.h"
#include "shared_options.h"
#include "tables_check.h"
#include "terminal.h"

namespace quillmark::tool {
namespace {

constexpr int kSignalStatus = 128;  // as shells count: a signal's number more

struct IdentifyOptions {
  OutputForm form;
  PathSources sources;
  unsigned jobs = 1;
  std::string progress = "auto";
  bool quiet = false;
};

struct Counts {
  std::size_t faces = 0, files = 0, passed_over = 0;
  bool complete = true;  // whether every named file gave a face
};

std::string Counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

std::string Summary(const Counts& counts) {
  std::string text = Counted(counts.faces, "face") + " in " + Counted(counts.files, "file");
  if (counts.passed_over > 0) text += "; " + Counted(counts.passed_over, "other file") + " passed over";
  return text + '\n';
}

std::string StoppedLine(std::size_t done, std::optional<std::size_t> total) {
  return "stopped after " + (total ? std::to_string(done) + " of " : "") +
         Counted(total.value_or(done), "file") + '\n';
}

bool ShowsProgress(const IdentifyOptions& options) {
  if (options.quiet) return false;
  return options.progress == "always" || (options.progress == "auto" && IsTerminal(STDERR_FILENO));
}

int Identify(const IdentifyOptions& options) {
  const std::unique_ptr<FaceWriter> writer = MakeWriter(options.form, std::cout);
  LoadTables();
  NoteInterrupts();
  FontPaths paths(options.sources);
  const PathCount count(options.sources);
  Progress progress(ShowsProgress(options), [&] { return count.total(); });
  const bool shares_terminal = IsTerminal(STDOUT_FILENO);
  Counts counts;

  IdentifyAll(paths, options.jobs, [&](const IdentifiedFile& file) {
    if (file.array) {
      if (shares_terminal) progress.Clear();
      counts.faces += file.faces.size();
      ++counts.files;
      writer->Add(file.faces, *file.array);
      if (!std::cout) FlushOutput();
    } else if (!file.reason.empty()) {
      progress.Clear();
      counts.complete = false;
      std::cerr << ShownPath(file.source.path) + ": " + file.reason + '\n';
    } else {
      ++counts.passed_over;
    }
    progress.Advance();
  });
  progress.Clear();
  writer->Finish();
  FlushOutput();

  if (paths.cut_short()) std::cerr << StoppedLine(progress.done(), count.total());
  if (!options.quiet) std::cerr << Summary(counts);
  if (paths.cut_short()) return kSignalStatus + Interrupted();
  return counts.complete && counts.files > 0 ? 0 : 1;
}

}  // namespace

void AddIdentify(CLI::App& app, int& status) {
  CLI::App* command =
      app.add_subcommand("identify", "Identify every face of files and of the files in folders");
  const auto options = std::make_shared<IdentifyOptions>();
  AddOutputForm(*command, options->form);
  AddJobs(*command, options->jobs);
  AddPaths(*command, options->sources);
  command->add_option("--progress", options->progress, "Whether a line tells how far the work is")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  command->add_flag("-q,--quiet", options->quiet, "Only results and errors: no counts, no progress");
  command->callback([&status, options] { status = Identify(*options); });
}

}  // namespace quillmark::tool
