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
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "resources/resource_listing.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

// False when the file spends the budget, as no real one does: the rest is not listed.
bool List(QuillmarkResourceFile& file, ListingWriter& writer) {
  try {
    std::vector<ListedResource> resources;
    const std::size_t left_out = ListResources(file, resources);
    writer.Add(resources, left_out);
    for (const std::int16_t id : file.getSortedResIDsForType(kFond)) {
      const Handle fond = file.getResourceHandleForType(kFond, id);
      if (fond != nullptr) writer.Add(LookAtFond(file, fond));
    }
  } catch (const BudgetSpent&) {
    return false;
  }
  return true;
}

int Resources(const std::string& path, const std::string& format) {
  OpenedFont opened(path);
  const ResourceFileHolder resources(AllocateResourceFile(opened.file, true));
  if (resources.get() == nullptr) {
    std::cerr << Printable(path) << ": " << WhyNotReadable(path).value_or("no resource map in either fork")
              << '\n';
    return 1;
  }
  const std::unique_ptr<ListingWriter> writer =
      format == "json" ? MakeListingJson(path) : MakeListingTables();
  const bool is_whole = List(*resources.get(), *writer);
  writer->Finish();
  if (is_whole) return 0;
  std::cerr << Printable(path) << ": " << kRepeatsItsBytes << '\n';
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
  command->add_option("file", options->file, "Font file with a resource fork, or data-fork font file")
      ->required();
  command->callback([&status, options] { status = Resources(options->file, options->format); });
}

}  // namespace quillmark::tool
