// quillmark identify: every face of the named files and of the files in the named folders.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "collect.h"
#include "commands.h"
#include "font_paths.h"
#include "output.h"
#include "reason.h"
#include "shared_options.h"
#include "tables_check.h"

namespace quillmark::tool {
namespace {

struct IdentifyOptions {
  std::string format = "table";
  unsigned threads = 1;
  std::vector<std::string> paths;
};

int Identify(const IdentifyOptions& options) {
  LoadTables();
  const std::vector<FontPath> paths = ExpandPaths(options.paths);
  const std::unique_ptr<FaceWriter> writer = MakeWriter(options.format, std::cout);
  std::size_t faces = 0, files = 0, passed_over = 0;
  bool all_named_gave_faces = true;

  IdentifyAll(paths, options.threads, [&](IdentifiedFile file) {
    if (file.array) {
      faces += file.faces.size();
      ++files;
      writer->Add(file.faces, *file.array);
    } else if (file.source.named) {
      all_named_gave_faces = false;
      std::cerr << ShownPath(file.source.path) << ": " << WhyNoFace(file.source.path) << '\n';
    } else {
      ++passed_over;
    }
  });
  writer->Finish();
  std::cout.flush();

  std::cerr << faces << (faces == 1 ? " face in " : " faces in ") << files
            << (files == 1 ? " file" : " files");
  if (passed_over > 0)
    std::cerr << "; " << passed_over << (passed_over == 1 ? " other file" : " other files") << " passed over";
  std::cerr << '\n';
  return all_named_gave_faces && files > 0 ? 0 : 1;
}

}  // namespace

void AddIdentify(CLI::App& app, int& status) {
  CLI::App* command =
      app.add_subcommand("identify", "Identify every face of files and of the files in folders");
  const auto options = std::make_shared<IdentifyOptions>();
  AddFormat(*command, options->format);
  AddJobs(*command, options->threads);
  command->add_option("paths", options->paths, "Font files, or folders to walk")->required();
  command->callback([&status, options] { status = Identify(*options); });
}

}  // namespace quillmark::tool
