#include "shared_options.h"

#include <sched.h>

#include <CLI/CLI.hpp>
#include <algorithm>

namespace quillmark::tool {
namespace {

constexpr unsigned kMostJobs = 256;

// The cores that this process may run on.
unsigned AvailableCores() {
  cpu_set_t cores;
  if (::sched_getaffinity(0, sizeof cores, &cores) != 0) return 1;
  return std::clamp(static_cast<unsigned>(CPU_COUNT(&cores)), 1u, kMostJobs);
}

void AddPaths(CLI::App& command, PathSources& sources) {
  command.add_option("paths", sources.paths, "Font files, or folders to walk");
  CLI::Option* list = command.add_option("--files-from", sources.list,
                                         "File with further paths, one a line; - for standard input");
  list->type_name("FILE");
  command.add_flag("-0,--null", sources.list_is_nul_separated, "Paths of the list are separated by NUL")
      ->needs(list);
  command.parse_complete_callback([&sources] {
    if (sources.paths.empty() && sources.list.empty()) throw CLI::RequiredError("PATH or --files-from");
  });
}

}  // namespace

void AddOutputForm(CLI::App& command, OutputForm& form) {
  command.add_option("--format", form.format, "How faces are written")
      ->check(CLI::IsMember(kFormats))
      ->capture_default_str();
  command.add_option("--fields", form.fields, "Fields to write, by their JSON names, separated by commas")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("LIST");
  command.add_flag("--wide", form.wide, "A table with every column, uncut, also on a narrow terminal");
}

void AddFiles(CLI::App& command, FilesOptions& options) {
  options.jobs = AvailableCores();
  command.add_option("-j,--jobs", options.jobs, "Files read at the same time")
      ->check(CLI::Range(1u, kMostJobs))
      ->default_str("number of cores");
  AddPaths(command, options.sources);
  command.add_option("--progress", options.progress, "Whether a line tells how far the work is")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  command.add_flag("-q,--quiet", options.quiet, "Only results and errors: no counts, no progress");
}

}  // namespace quillmark::tool
