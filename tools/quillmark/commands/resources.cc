// quillmark resources: the resource map of a font file, and what each of its FONDs says.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "reasons/opened_font.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "resources/resource_listing.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

void List(QuillmarkResourceFile& file, ListingWriter& writer) {
  std::vector<ListedResource> resources;
  const std::size_t left_out = ListResources(file, resources);
  writer.Add(resources, left_out);
  for (const std::int16_t id : file.getSortedResIDsForType(kFond)) {
    const Handle fond = file.getResourceHandleForType(kFond, id);
    if (fond != nullptr) writer.Add(LookAtFond(file, fond));
  }
}

// Why not all of the file's resources were written; empty when they were.
std::string WriteListing(const std::string& path, const std::string& format) {
  const WatchedFiles files;
  OpenedFont opened(path, files);
  std::unique_ptr<ListingWriter> writer;
  std::string fault;
  try {
    const ResourceFileHolder resources(AllocateResourceFile(opened.file, true));
    if (files.failure()) return files.WhyUnread(path);
    if (resources.get() == nullptr) {
      return WhyNotReadable(path).value_or("no resource map in either fork");
    }
    writer = format == "json" ? MakeListingJson(path) : MakeListingTables();
    List(*resources.get(), *writer);
    fault = files.WhyUnread(path);
  } catch (const BudgetSpent&) {
    fault = kTakesTooMuchWork;
  }
  if (writer) writer->Finish();
  return fault;
}

int Resources(const std::string& path, const std::string& format) {
  const std::string fault = WriteListing(path, format);
  if (fault.empty()) return 0;
  std::cerr << Printable(path) << ": " << fault << '\n';
  return 1;
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
