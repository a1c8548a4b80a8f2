// quillmark: identifies fonts. Parses the command line and runs one command; the library does the rest.
#include <CLI/CLI.hpp>
#include <clocale>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "commands.h"
#include "output.h"
#include "quillmark/quillmark.h"
#include "tables_check.h"

namespace {

namespace tool = quillmark::tool;

constexpr int kWrongUsage = 2;

std::string Version() {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  QM_GetQuillmarkVersion(&major, &minor);
  return "quillmark " + std::to_string(major) + "." + std::to_string(minor);
}

CLI::Option* AddFormat(CLI::App* command, std::string& format) {
  return command->add_option("--format", format, "How faces are written")
      ->check(CLI::IsMember(tool::kFormats))
      ->capture_default_str();
}

int Run(int argc, char** argv) {
  CLI::App app("Identifies fonts: which fonts are these, exactly, and which of them are the same?");
  app.set_version_flag("--version", Version());
  app.require_subcommand(1);

  tool::IdentifyOptions identify_options;
  CLI::App* identify =
      app.add_subcommand("identify", "Identify every face of files and of the files in folders");
  AddFormat(identify, identify_options.format);
  identify->add_option("-j,--jobs", identify_options.threads, "Files read at the same time")
      ->check(CLI::Range(1u, 256u))
      ->capture_default_str();
  identify->add_option("paths", identify_options.paths, "Font files, or folders to walk")->required();

  std::string name;
  std::string second;
  CLI::App* styles = app.add_subcommand("styles", "Tell the styles that a font's names tell");
  styles->add_option("name", name, "PostScript name")->required();
  styles->add_option("second", second, "Another name of the font");

  CLI::App* classify = app.add_subcommand("classify", "Tell the class of a font family");
  classify->add_option("family", name, "Family name")->required();
  classify->add_option("alternate", second, "Name to try when the first has no class");

  std::string file;
  std::string format = "table";
  CLI::App* read = app.add_subcommand("read", "Read stored XML or a property list and write it in any form");
  AddFormat(read, format);
  read->add_option("file", file, "The stored text")->required();

  CLI::App* resources =
      app.add_subcommand("resources", "Print the resource map of a font file and its FONDs");
  resources->add_option("file", file, "Font file with a resource fork, or data-fork font file")->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }

  const int status = [&] {
    if (*resources) return tool::Resources(file);
    tool::LoadTables();
    if (*identify) return tool::Identify(identify_options);
    if (*read) return tool::Read(file, format);
    if (*styles) return tool::Styles(name, second);
    return tool::Classify(name, second);
  }();
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
