// quillmark catalogue: keeps what identify gives of many files, and tells what it keeps.
#include "catalogue/catalogue.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

// A command of the group, which takes the path of a catalogue first.
CLI::App* AddPart(CLI::App& group, const std::string& name, const std::string& told, std::string& catalogue) {
  CLI::App* const part = group.add_subcommand(name, told);
  part->add_option("DB", catalogue, "File of the catalogue")->required()->check(NotEmpty("catalogue"));
  return part;
}

CLI::Validator WholeNumber(std::int64_t least) {
  return {[least](const std::string& value) {
            std::int64_t number = 0;
            const bool is_number = CLI::detail::lexical_cast(value, number) && number >= least;
            return is_number ? ""
                             : "no number \"" + value + "\"; it takes " + std::to_string(least) + " and more";
          },
          ""};
}

void AddUpdate(CLI::App& group, int& status) {
  const auto update = std::make_shared<CatalogueUpdate>();
  CLI::App* const command =
      AddPart(group, "update", "Make a catalogue, or bring it up to date", update->catalogue);
  command
      ->add_option("PATH", update->roots,
                   "What it is of from here on: files, and folders with all below them")
      ->check(NotEmpty("path"));
  command->add_flag("--ignore-ctime", update->ignore_ctime, "Of copied trees: not look at times of change");
  command->add_flag("--ignore-inode", update->ignore_inode, "Of copied trees: not look at inode numbers");
  command->add_flag("--accept-unmounted", update->accept_unmounted,
                    "Give up files of file systems that are not mounted any more");
  AddWork(*command, update->work);
  command->callback([&status, update] {
    LoadTables(kEveryNeed);
    update->tables = TablesInUse();
    status = UpdateCatalogue(*update);
  });
}

void AddList(CLI::App& group, int& status) {
  struct Options {
    std::string catalogue;
    OutputForm form;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPart(group, "list", "List the faces, as identify does", options->catalogue);
  AddOutputForm(*command, options->form);
  command->callback([&status, options] { status = ListCatalogue(options->catalogue, options->form); });
}

void AddChanges(CLI::App& group, int& status) {
  const auto query = std::make_shared<ChangesQuery>();
  CLI::App* const command =
      AddPart(group, "changes", "List the files that were added, changed or gone", query->catalogue);
  command->add_option("--since", query->since, "All after this run, instead of those of the last one")
      ->check(WholeNumber(0))
      ->type_name("RUN");
  AddResultForm(*command, query->format, "text");
  command->callback([&status, query] { status = TellChanges(*query); });
}

void AddInfo(CLI::App& group, int& status) {
  const auto options = std::make_shared<std::pair<std::string, std::string>>();
  CLI::App* const command =
      AddPart(group, "info", "Tell the roots, runs, sizes and versions", options->first);
  AddResultForm(*command, options->second, "text");
  command->callback([&status, options] { status = TellCatalogue(options->first, options->second); });
}

void AddVerify(CLI::App& group, int& status) {
  const auto check = std::make_shared<CatalogueCheck>();
  CLI::App* const command = AddPart(group, "verify", "Read files again and compare", check->catalogue);
  command->add_option("--sample", check->sample, "Only so many files, chosen by chance")
      ->check(WholeNumber(1))
      ->type_name("N");
  AddWork(*command, check->work);
  command->callback([&status, check] {
    LoadTables(kEveryNeed);
    check->tables = TablesInUse();
    status = VerifyCatalogue(*check);
  });
}

CatalogueMerge::Part PartIn(const std::string& word) {
  const std::size_t equals = word.find('=');
  const bool is_part = equals != std::string::npos && equals > 0 && equals + 1 < word.size();
  if (!is_part || word.find_first_of("/:") < equals) {
    throw CLI::ValidationError("no LABEL=OTHER \"" + Printable(word) + "\"; a label holds neither / nor :");
  }
  return {word.substr(0, equals), word.substr(equals + 1)};
}

void AddMerge(CLI::App& group, int& status) {
  struct Options {
    std::string catalogue;
    std::vector<std::string> words;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      AddPart(group, "merge", "Take in the catalogues of other machines", options->catalogue);
  command->add_option("LABEL=OTHER", options->words, "A name for a machine, and its catalogue")->required();
  command->callback([&status, options] {
    CatalogueMerge merge{options->catalogue, {}, {}};
    std::set<std::string> labels;
    for (const std::string& word : options->words) {
      merge.parts.push_back(PartIn(word));
      const std::string& label = merge.parts.back().label;
      if (!labels.insert(label).second) {
        throw CLI::ValidationError("the label " + Printable(label) + " is given twice");
      }
    }
    LoadTables(kEveryNeed);
    merge.tables = TablesInUse();
    status = MergeCatalogues(merge);
  });
}

}  // namespace

void AddCatalogue(CLI::App& app, int& status) {
  CLI::App* const group = app.add_subcommand("catalogue", "Keep what many files give, and look it up");
  group->require_subcommand(1);
  AddUpdate(*group, status);
  AddList(*group, status);
  AddChanges(*group, status);
  AddInfo(*group, status);
  AddVerify(*group, status);
  AddMerge(*group, status);
}

}  // namespace quillmark::tool
