// quillmark why: what each named file gives, and why files give no face or fewer than they list.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "files/identify_files.h"
#include "files/interrupt.h"
#include "output/json_form.h"
#include "output/output.h"
#include "reasons/reason.h"

namespace quillmark::tool {
namespace {

struct WhyOptions {
  std::string format;
  FilesOptions files;
};

std::string JsonExplanation(const IdentifiedFile& file) {
  using Json = nlohmann::ordered_json;
  const Explanation& found = file.explanation;
  return JsonText({{"path", file.source.path},
                   {"faces", file.faces.size()},
                   {"listed", found.listed ? Json(*found.listed) : Json()},
                   {"reason", found.reason.empty() ? Json() : Json(found.reason)}});
}

int Why(const WhyOptions& options) {
  std::optional<JsonArray> array;
  if (options.format == "json") array.emplace(std::cout);
  bool complete = true;
  const std::string stopped = VisitFiles(options.files, [&](const IdentifiedFile& file, Progress& progress) {
    const Explanation& found = file.explanation;
    // Of files found in folders only those that lost faces are reported.
    if (found.reason.empty() && !file.source.named) return;
    if (found.outcome == Outcome::kFolder && !options.files.sources.walk.recurse) return;
    const bool is_unreadable = found.outcome == Outcome::kUnreadable;
    if (is_unreadable) complete = false;
    progress.Clear();
    if (array) array->Add(JsonExplanation(file));
    if (!array || is_unreadable) {
      // Flushed at once, so that the lines of both streams appear in the order of the paths.
      (is_unreadable ? std::cerr : std::cout) << LineOf(file) << std::endl;
    }
    if (!std::cout) FlushOutput();
  });
  if (array) array->Finish();
  FlushOutput();
  if (!stopped.empty()) {
    std::cerr << stopped + '\n';
    return InterruptedStatus();
  }
  return complete ? 0 : 1;
}

}  // namespace

void AddWhy(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("why", "Tell why files give no face, or fewer than they list");
  const auto options = std::make_shared<WhyOptions>();
  AddResultForm(*command, options->format, "text");
  AddFiles(*command, options->files);
  // The bytes are read as for identify; a foundry would take a table, and is not shown.
  options->files.needs = {QM_ATTRIBUTES_ALL & ~QM_ATTRIBUTE_FOUNDRY};
  AddStandardInput(*command, options->files.sources);
  command->callback([&status, options] { status = Why(*options); });
}

}  // namespace quillmark::tool
