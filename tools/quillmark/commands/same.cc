// quillmark same: finds copies in a library of fonts, names in conflict, and the formats and versions of a
// font.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/suggestion.h"
#include "commands/tables_check.h"
#include "files/identify_files.h"
#include "files/interrupt.h"
#include "library/library_forms.h"
#include "output/output.h"

namespace quillmark::tool {
namespace {

struct SameOptions {
  std::string catalogue;  // instead of files
  std::string format = "table";
  bool near = false;
  std::vector<std::string> without;  // names of lists
  FilesOptions files;
};

void WriteSummary(std::ostream& out, const Library& library, const std::string& losses) {
  const auto part = [&out](std::size_t count, const char* one, const char* many) {
    if (count > 0) out << "; " << count << (count == 1 ? one : many);
  };
  const LibraryCounts counts = library.Count();
  out << FacesInFiles(counts.faces, library.files().size());
  part(counts.nameless, " face without a PostScript name", " faces without a PostScript name");
  part(counts.names_without_letters, " face whose PostScript name holds neither letter nor digit",
       " faces whose PostScript name holds neither letter nor digit");
  part(library.link_count(), " other path of the same file", " other paths of the same files");
  out << losses << '\n';
}

LibraryLists ListsOf(const Library& library, const SameOptions& options) {
  const auto wanted = [&](const char* list) {
    return std::find(options.without.begin(), options.without.end(), list) == options.without.end();
  };
  LibraryLists lists;
  if (wanted("copies")) lists.copies = Copies(library);
  if (wanted("conflicts")) lists.conflicts = Conflicts(library);
  if (wanted("formats")) lists.formats = Formats(library);
  if (wanted("versions")) lists.versions = Versions(library);
  if (options.near && wanted("near")) lists.near = NearNames(library);
  return lists;
}

int Same(const SameOptions& options) {
  if (options.catalogue.empty()) LoadTables(options.files.needs);
  Library library;
  FilesOptions files = options.files;
  const FilesOutcome outcome = options.catalogue.empty()
                                   ? IdentifyFiles(files, false,
                                                   [&](const IdentifiedFile& file) {
                                                     library.Add(file.source.path, file.faces, *file.array);
                                                   })
                                   : AddFromCatalogue(options.catalogue, library, files.sources.paths);
  // Lists over a part of the files would miss copies and conflicts.
  if (!outcome.stopped.empty()) {
    std::cerr << outcome.stopped + "; no lists were written\n";
    return InterruptedStatus();
  }

  library.Finish();
  const LibraryLists lists = ListsOf(library, options);
  const auto write = options.format == "json"  ? WriteLibraryJson
                     : options.format == "tsv" ? WriteLibraryTsv
                                               : WriteLibraryTables;
  // "Conflicts: none" would say that fonts were compared. The other forms stay well-formed for programs.
  const bool is_for_people = options.format == "table";
  if (!is_for_people || !library.files().empty()) write(std::cout, library, lists);
  FlushOutput();
  if (!options.files.quiet) {
    WriteSummary(std::cerr, library, Losses(outcome.counts, files));
  }
  if (!outcome.complete || library.files().empty()) return 1;
  return lists.conflicts && !lists.conflicts->empty() ? kConflictStatus : 0;
}

}  // namespace

void AddSame(CLI::App& app, int& status) {
  CLI::App* command =
      app.add_subcommand("same", "List copies, names in conflict, formats and versions among many fonts");
  const auto options = std::make_shared<SameOptions>();
  command->add_option("--format", options->format, "How the lists are written")
      ->check(OneOf("form", {"table", "json", "tsv"}))
      ->capture_default_str();
  AddFiles(*command, options->files);
  options->files.needs = {FaceNeeds::kAlways | QM_ATTRIBUTE_KIND | QM_ATTRIBUTE_VERSION |
                          QM_ATTRIBUTE_FOUNDRY | QM_ATTRIBUTE_CHECKSUM | QM_ATTRIBUTE_OUTLINE_FILE_SIZE |
                          QM_ATTRIBUTE_OUTLINE_FILE_NAME | kVariationAxes};
  command->add_option("--catalogue", options->catalogue, "Look into this catalogue, and read no font")
      ->check(NotEmpty("catalogue"))
      ->type_name("DB");
  command->parse_complete_callback([options] {
    const PathSources& sources = options->files.sources;
    const bool has_paths = !sources.paths.empty() || !sources.list.empty();
    if (options->catalogue.empty() && !has_paths)
      throw CLI::RequiredError("PATH, --files-from or --catalogue");
    if (!options->catalogue.empty() && has_paths) {
      throw CLI::ValidationError("--catalogue stands in the place of paths");
    }
  });
  command->add_flag("--near", options->near, "Also list names that are alike but for punctuation");
  command->add_option("--without", options->without, "Lists to leave out, separated by commas")
      ->check(OneOf("list", {"copies", "conflicts", "formats", "versions", "near"}))
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("LIST");
  command->callback([&status, options] { status = Same(*options); });
}

}  // namespace quillmark::tool
