#include "shared_options.h"

#include <CLI/CLI.hpp>

#include "output.h"

namespace quillmark::tool {

void AddFormat(CLI::App& command, std::string& format) {
  command.add_option("--format", format, "How faces are written")
      ->check(CLI::IsMember(kFormats))
      ->capture_default_str();
}

void AddJobs(CLI::App& command, unsigned& jobs) {
  command.add_option("-j,--jobs", jobs, "Files read at the same time")
      ->check(CLI::Range(1u, 256u))
      ->capture_default_str();
}

}  // namespace quillmark::tool
