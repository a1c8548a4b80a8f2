#include "commands/shared_options.h"

#include <sched.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "commands/suggestion.h"
#include "faces/fields.h"
#include "files/standard_input.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr unsigned kMostJobs = 256;

// The cores that this process may run on.
unsigned AvailableCores() {
  cpu_set_t cores;
  if (::sched_getaffinity(0, sizeof cores, &cores) != 0) return 1;
  return std::clamp(static_cast<unsigned>(CPU_COUNT(&cores)), 1u, kMostJobs);
}

bool IsStandardInput(const std::string& path) { return path == kStandardInputPath; }

// Standard input can be read only once, and --name belongs to it alone.
void CheckStandardInput(const PathSources& sources) {
  const auto fonts = std::count_if(sources.paths.begin(), sources.paths.end(), IsStandardInput);
  if (fonts + (IsStandardInput(sources.list) ? 1 : 0) > 1) {
    throw CLI::ValidationError("\"-\" stands for standard input, which can be read only once");
  }
  if (fonts == 0 && !sources.standard_input_name->empty()) {
    throw CLI::ValidationError("--name is for a font from standard input, which the path \"-\" stands for");
  }
}

void AddPaths(CLI::App& command, PathSources& sources) {
  command.add_option("PATH", sources.paths, "Font files, or folders to walk");
  CLI::Option* list = command.add_option("--files-from", sources.list,
                                         "File with further paths, one a line; - for standard input");
  list->type_name("FILE");
  command.add_flag("-0,--null", sources.list_is_nul_separated, "Paths of the list are separated by NUL")
      ->needs(list);
  command.add_flag_callback(
      "--no-recurse", [&sources] { sources.walk.recurse = false; },
      "Only the files of named folders, not their folders");
  command.add_flag("--follow", sources.walk.follow, "Also enter linked folders, each folder once");
  command.parse_complete_callback([&sources] {
    if (sources.paths.empty() && sources.list.empty()) throw CLI::RequiredError("PATH or --files-from");
    if (sources.standard_input_name) CheckStandardInput(sources);
  });
}

CLI::Validator NumberOfJobs() {
  const std::string range = "1 to " + std::to_string(kMostJobs);
  return {[range](const std::string& value) {
            unsigned jobs = 0;
            const bool is_number = CLI::detail::lexical_cast(value, jobs) && jobs >= 1 && jobs <= kMostJobs;
            return is_number ? "" : "no number \"" + Printable(value) + "\"; it takes " + range;
          },
          range};
}

void AddJobs(CLI::App& command, FilesOptions& options) {
  options.jobs = AvailableCores();
  command.add_option("-j,--jobs", options.jobs, "Files read at the same time")
      ->check(NumberOfJobs())
      ->default_str("number of cores");
}

void AddProgress(CLI::App& command, FilesOptions& options) {
  command.add_option("--progress", options.progress, "Whether a line tells how far the work is")
      ->check(OneOf("choice", {"auto", "always", "never"}))
      ->capture_default_str();
  command.add_flag("-q,--quiet", options.quiet, "Only results and errors: no counts, no progress");
}

// Takes a path, and leaves its last component.
CLI::Validator FileName() {
  return {[](std::string& path) {
            path = std::filesystem::path(path).filename().native();
            constexpr std::size_t kLongestName = 255;
            const bool is_name = !path.empty() && path != "." && path != ".." && path.size() <= kLongestName;
            return std::string(is_name ? "" : "no name for a file");
          },
          ""};
}

}  // namespace

CLI::Validator AnyField() {
  std::vector<std::string> names;
  for (const Field& field : AllFields()) names.emplace_back(field.name);
  return OneOf("field", names).description("");
}

CLI::Validator NotEmpty(const std::string& thing) {
  return {[thing](const std::string& value) { return value.empty() ? "no " + thing + " \"\"" : ""; }, ""};
}

void AddOutputForm(CLI::App& command, OutputForm& form) {
  command.add_option("--format", form.format, "How faces are written")
      ->check(OneOf("form", kFormats))
      ->capture_default_str();
  command.add_option("--fields", form.fields, "Fields to write, by their JSON names, separated by commas")
      ->check(AnyField())
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("LIST");
  command.add_flag("--wide", form.wide, "A table with every column, uncut, also on a narrow terminal");
}

void AddResultForm(CLI::App& command, std::string& format, const std::string& usual) {
  format = usual;
  command.add_option("--format", format, "How the result is written")
      ->check(OneOf("form", {usual, "json"}))
      ->capture_default_str();
}

void AddStandardInput(CLI::App& command, PathSources& sources) {
  sources.standard_input_name.emplace();
  command.get_option("PATH")->description("Font files, folders to walk, or - for a font from standard input");
  command
      .add_option("--name", *sources.standard_input_name,
                  "File name of the font that comes from standard input, as path -")
      ->transform(FileName())
      ->type_name("FILE");
}

void AddFiles(CLI::App& command, FilesOptions& options) {
  AddJobs(command, options);
  AddPaths(command, options.sources);
  AddProgress(command, options);
}

void AddWork(CLI::App& command, FilesOptions& options) {
  AddJobs(command, options);
  AddProgress(command, options);
}

}  // namespace quillmark::tool
