// quillmark: identifies fonts. Parses the command line, which runs one command; the library does the rest.
#include <CLI/CLI.hpp>
#include <clocale>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "commands.h"
#include "quillmark/quillmark.h"

namespace {

namespace tool = quillmark::tool;

constexpr int kWrongUsage = 2;

std::string Version() {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  QM_GetQuillmarkVersion(&major, &minor);
  return "quillmark " + std::to_string(major) + "." + std::to_string(minor);
}

int Run(int argc, char** argv) {
  CLI::App app("Identifies fonts: which fonts are these, exactly, and which of them are the same?");
  app.set_version_flag("--version", Version());
  app.require_subcommand(1);

  int status = 0;
  tool::AddIdentify(app, status);
  tool::AddRead(app, status);
  tool::AddResources(app, status);
  tool::AddStyles(app, status);
  tool::AddClassify(app, status);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  if (!std::cout.flush()) throw std::runtime_error("standard output cannot be written");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // Only for the widths of characters; numbers and messages stay as they are in every locale.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "quillmark: " << error.what() << '\n';
    return 1;
  }
}
