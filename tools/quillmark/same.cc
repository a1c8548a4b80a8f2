// quillmark same: what a library of fonts holds twice, which names are in conflict, and which versions there
// are.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "collect.h"
#include "commands.h"
#include "font_paths.h"
#include "library_forms.h"
#include "output.h"
#include "reason.h"
#include "shared_options.h"
#include "tables_check.h"

namespace quillmark::tool {
namespace {

constexpr int kConflictsFound = 3;

struct SameOptions {
  std::string format = "table";
  unsigned jobs = 1;
  bool near = false;
  PathSources sources;
};

void WriteSummary(std::ostream& out, const Library& library, std::size_t passed_over) {
  const auto part = [&out](std::size_t count, const char* one, const char* many) {
    if (count > 0) out << "; " << count << (count == 1 ? one : many);
  };
  const LibraryCounts counts = library.Count();
  out << counts.faces << (counts.faces == 1 ? " face in " : " faces in ") << library.files().size()
      << (library.files().size() == 1 ? " file" : " files");
  part(counts.nameless, " face without a PostScript name", " faces without a PostScript name");
  part(library.link_count(), " other path of the same file", " other paths of the same files");
  part(passed_over, " other file passed over", " other files passed over");
  out << '\n';
}

int Same(const SameOptions& options) {
  LoadTables();
  Library library;
  std::size_t passed_over = 0;
  bool complete = true;
  FontPaths paths(options.sources);
  IdentifyAll(paths, options.jobs, [&](const IdentifiedFile& file) {
    if (file.array) {
      library.Add(file.source.path, file.faces, *file.array);
    } else if (!file.reason.empty()) {
      complete = false;
      std::cerr << ShownPath(file.source.path) + ": " + file.reason + '\n';
    } else {
      ++passed_over;
    }
  });
  library.Finish();

  LibraryLists lists{Copies(library), Conflicts(library), Versions(library), std::nullopt};
  if (options.near) lists.near = NearNames(library);
  if (options.format == "json") {
    WriteLibraryJson(std::cout, library, lists);
  } else {
    WriteLibraryTables(std::cout, library, lists);
  }
  FlushOutput();
  WriteSummary(std::cerr, library, passed_over);
  if (!complete || library.files().empty()) return 1;
  return lists.conflicts.empty() ? 0 : kConflictsFound;
}

}  // namespace

void AddSame(CLI::App& app, int& status) {
  CLI::App* command =
      app.add_subcommand("same", "List copies, names in conflict and versions among many fonts");
  const auto options = std::make_shared<SameOptions>();
  command->add_option("--format", options->format, "How the lists are written")
      ->check(CLI::IsMember({"table", "json"}))
      ->capture_default_str();
  AddJobs(*command, options->jobs);
  AddPaths(*command, options->sources);
  command->add_flag("--near", options->near, "Also list names that are alike but for punctuation");
  command->footer("Exit status: 0 no conflict, 3 conflicts, 1 a named path gave no face, 2 wrong usage");
  command->callback([&status, options] { status = Same(*options); });
}

}  // namespace quillmark::tool
