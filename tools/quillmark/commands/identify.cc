// quillmark identify: every face of the named files and of the files in the named folders.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "faces/fields.h"
#include "files/identify_files.h"
#include "files/interrupt.h"
#include "output/output.h"
#include "output/sorted_writer.h"

namespace quillmark::tool {
namespace {

struct IdentifyOptions {
  OutputForm form;
  FilesOptions files;
  std::string sort;  // name of a field; empty for the order of the paths
};

int Identify(const IdentifyOptions& options) {
  std::unique_ptr<FaceWriter> writer = MakeWriter(options.form, std::cout);
  FilesOptions files_options = options.files;
  files_options.needs = NeedsOfForm(options.form);
  if (!options.sort.empty()) {
    const Field* const key = FindField(options.sort);
    writer = Sorted(std::move(writer), *key);
    files_options.needs = files_options.needs | NeedsOf({key});
  }
  LoadTables(files_options.needs);
  std::size_t faces = 0;
  std::size_t files = 0;
  const FilesOutcome outcome =
      IdentifyFiles(files_options, writer->WritesAtOnce(), [&](IdentifiedFile& file) {
        const std::size_t count = file.faces.size();
        writer->Add(std::move(file.faces), std::move(file.array));
        faces += count;
        ++files;
        if (!std::cout) FlushOutput();
      });
  writer->Finish();
  FlushOutput();

  if (!outcome.stopped.empty()) std::cerr << outcome.stopped + '\n';
  if (!options.files.quiet) {
    std::cerr << FacesInFiles(faces, files) + Losses(outcome.counts, options.files) + '\n';
  }
  if (!outcome.stopped.empty()) return InterruptedStatus();
  if (options.files.quiet && files == 0 && outcome.complete) std::cerr << "no face was found\n";
  return outcome.complete && files > 0 ? 0 : 1;
}

}  // namespace

void AddIdentify(CLI::App& app, int& status) {
  CLI::App* command =
      app.add_subcommand("identify", "Identify every face of files and of the files in folders");
  const auto options = std::make_shared<IdentifyOptions>();
  AddOutputForm(*command, options->form);
  command->add_option("--sort", options->sort, "Field to order the faces by, instead of the paths")
      ->check(AnyField())
      ->type_name("FIELD");
  AddFiles(*command, options->files);
  command->add_flag("--why", options->files.why, "Also tell why files give no face, or fewer than they list");
  AddStandardInput(*command, options->files.sources);
  command->callback([&status, options] { status = Identify(*options); });
}

}  // namespace quillmark::tool
