// quillmark find: which file is this font? Looks names up in a catalogue, or in files and folders.
#include <CLI/CLI.hpp>
#include <memory>

#include "catalogue/catalogue.h"
#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/suggestion.h"
#include "commands/tables_check.h"

namespace quillmark::tool {

void AddFind(CLI::App& app, int& status) {
  CLI::App* const command = app.add_subcommand("find", "Tell which files are the fonts of these names");
  const auto search = std::make_shared<NameSearch>();
  command->add_option("NAME", search->names, "Names of fonts: PostScript, full, or family and style");
  CLI::Option* const list = command->add_option("--names-from", search->names_from,
                                                "File with further names, one a line; - for standard input");
  list->type_name("FILE");
  command->add_flag("-0,--null", search->names_are_nul_separated, "Names of the list are separated by NUL")
      ->needs(list);
  command->add_option("--catalogue", search->catalogue, "Catalogue to look into")
      ->check(NotEmpty("catalogue"))
      ->type_name("DB");
  command->add_option("--in", search->places, "File or folder to look into; may be given several times")
      ->check(NotEmpty("path"))
      ->type_name("PATH")
      ->allow_extra_args(false);
  command->add_flag("--like", search->like,
                    "For what is missing, also tell faces of the same class and style");
  command->add_option("--format", search->format, "How the answers are written")
      ->check(OneOf("form", {"table", "json", "jsonl"}))
      ->capture_default_str();
  AddWork(*command, search->work);
  command->parse_complete_callback([search] {
    for (const std::string& name : search->names) {
      if (name.find_first_not_of(" \t\r\n") == std::string::npos)
        throw CLI::ValidationError("a NAME is empty");
    }
    if (search->names.empty() && search->names_from.empty()) throw CLI::RequiredError("NAME or --names-from");
    if (search->catalogue.empty() && search->places.empty()) throw CLI::RequiredError("--catalogue or --in");
    if (!search->catalogue.empty() && !search->places.empty()) {
      throw CLI::ValidationError("--catalogue and --in exclude each other");
    }
  });
  command->callback([&status, search] {
    // Of a catalogue only family and style, and guesses, are told by tables.
    FaceNeeds needs{.styles = true, .classification = search->like};
    if (search->catalogue.empty()) needs = kEveryNeed;
    LoadTables(needs);
    status = FindNames(*search);
  });
}

}  // namespace quillmark::tool
