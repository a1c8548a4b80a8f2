// quillmark resources: the resource map of a font file, and what each of its FONDs says.
#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "output/output.h"
#include "reasons/opened_font.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"
#include "resources/resource_access.h"
#include "resources/resource_listing.h"

namespace quillmark::tool {
namespace {

// Why not all of the file's resources were written; empty when they were.
std::string WriteListing(const std::string& path, const std::string& format) {
  const WatchedFiles files;
  OpenedFont opened(path, files);
  std::optional<ResourceListing> listing;
  std::string fault;
  try {
    const ResourceFileHolder resources(AllocateResourceFile(opened.file, true));
    if (files.failure()) return files.WhyUnread(path);
    if (resources.get() == nullptr) {
      return WhyNotReadable(path).value_or("no resource map in either fork");
    }
    ListResources(*resources.get(), listing.emplace());
    fault = files.WhyUnread(path);
  } catch (const BudgetSpent&) {
    fault = TooMuchWork(opened.budget.most_work());
  }
  if (listing && format == "json") WriteListingJson(path, *listing);
  if (listing && format != "json") WriteListingTables(*listing);
  return fault;
}

int Resources(const std::string& path, const std::string& format) {
  const std::string fault = WriteListing(path, format);
  return fault.empty() ? 0 : ReportFault(path, fault);
}

}  // namespace

void AddResources(CLI::App& app, int& status) {
  struct Options {
    std::string file, format;
  };
  CLI::App* command = app.add_subcommand("resources", "Print the resource map of a font file and its FONDs");
  const auto options = std::make_shared<Options>();
  AddResultForm(*command, options->format, "table");
  command->add_option("FILE", options->file, "Font file with a resource fork, or data-fork font file")
      ->required();
  command->callback([&status, options] { status = Resources(options->file, options->format); });
}

}  // namespace quillmark::tool
