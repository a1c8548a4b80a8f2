// quillmark same: what a library of fonts holds twice, which names are in conflict, and which versions there
// are.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "identify_files.h"
#include "interrupt.h"
#include "library_forms.h"
#include "output.h"
#include "shared_options.h"
#include "tables_check.h"

namespace quillmark::tool {
namespace {

constexpr int kConflictsFound = 3;

struct SameOptions {
  std::string format = "table";
  bool near = false;
  FilesOptions files;
};

void WriteSummary(std::ostream& out, const Library& library, std::size_t passed_over) {
  const auto part = [&out](std::size_t count, const char* one, const char* many) {
    if (count > 0) out << "; " << count << (count == 1 ? one : many);
  };
  const LibraryCounts counts = library.Count();
  out << FacesInFiles(counts.faces, library.files().size());
  part(counts.nameless, " face without a PostScript name", " faces without a PostScript name");
  part(library.link_count(), " other path of the same file", " other paths of the same files");
  out << PassedOver(passed_over) << '\n';
}

int Same(const SameOptions& options) {
  LoadTables();
  Library library;
  const FilesOutcome outcome = IdentifyFiles(options.files, false, [&](const IdentifiedFile& file) {
    library.Add(file.source.path, file.faces, *file.array);
  });
  // Lists of a part would call a copy or a conflict missing that is there.
  if (!outcome.stopped.empty()) {
    std::cerr << outcome.stopped + "; no lists were written\n";
    return InterruptedStatus();
  }

  library.Finish();
  LibraryLists lists{Copies(library), Conflicts(library), Versions(library), std::nullopt};
  if (options.near) lists.near = NearNames(library);
  if (options.format == "json") {
    WriteLibraryJson(std::cout, library, lists);
  } else {
    WriteLibraryTables(std::cout, library, lists);
  }
  FlushOutput();
  if (!options.files.quiet) WriteSummary(std::cerr, library, outcome.passed_over);
  if (!outcome.complete || library.files().empty()) return 1;
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
  AddFiles(*command, options->files);
  command->add_flag("--near", options->near, "Also list names that are alike but for punctuation");
  command->footer("Exit status: 0 no conflict, 3 conflicts, 1 a named path gave no face, 2 wrong usage");
  command->callback([&status, options] { status = Same(*options); });
}

}  // namespace quillmark::tool
