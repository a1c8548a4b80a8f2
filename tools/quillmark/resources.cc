// quillmark resources: the resource map of a font file, and what each of its FONDs says.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "platform/cf_ref.h"
#include "platform/forks.h"
#include "reason.h"
#include "resource_listing.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "shared_options.h"

namespace quillmark::tool {
namespace {

int Resources(const std::string& path, const std::string& format) {
  const CFRef<CFStringRef> name =
      Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  const ResourceFileHolder file(name ? AllocateResourceFile(name.get(), true) : nullptr);
  if (file.get() == nullptr) {
    std::cerr << ShownPath(path) << ": "
              << (IsRegularFile(path) ? "no resource map in either fork" : ExplainNoFace(path).reason)
              << '\n';
    return 1;
  }
  const std::unique_ptr<ListingWriter> writer =
      format == "json" ? MakeListingJson(path) : MakeListingTables();
  std::vector<ListedResource> resources;
  const std::size_t left_out = ListResources(*file.get(), resources);
  writer->Add(resources, left_out);
  for (const std::int16_t id : file.get()->getSortedResIDsForType(FourCharCode("FOND"))) {
    const ResourceHandle fond(file.get()->getResourceHandleForType(FourCharCode("FOND"), id));
    if (fond.get() != nullptr) writer->Add(LookAtFond(*file.get(), fond.get()));
  }
  writer->Finish();
  return 0;
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
