// quillmark: identifies fonts. Parses the command line, which runs one command; the library does the rest.
#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "commands/commands.h"
#include "output/output.h"
#include "text/terminal_guard.h"

namespace {

namespace tool = quillmark::tool;

constexpr int kWrongUsage = 2;

int Run(int argc, char** argv) {
  CLI::App app("Identifies fonts: which fonts are these, exactly, and which of them are the same?",
               "quillmark");
  app.set_version_flag("-V,--version", tool::VersionLine());
  app.require_subcommand(0, 1);

  int status = 0;
  for (const auto add : {tool::AddIdentify, tool::AddSame, tool::AddFind, tool::AddCatalogue,
                         tool::AddCompare, tool::AddWhy, tool::AddSplit, tool::AddRead, tool::AddResources,
                         tool::AddStyles, tool::AddClassify, tool::AddVersion}) {
    add(app, status);
  }
  tool::AddHelp(app);

  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) words.emplace_back(argv[i]);
  if (!tool::RunCommandLine(app, words)) return kWrongUsage;
  tool::FlushOutput();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // Nobody reads a closed pipe: the signal ends the tool at once and without a word, also where a parent
  // ignores it.
  ::signal(SIGPIPE, SIG_DFL);
  // A stream of its own hands over as much at once as it was given, and with it whole lines.
  std::ios::sync_with_stdio(false);
  // Only for the widths of characters; numbers and messages stay as they are in every locale.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  const tool::TerminalGuard output(std::cout, STDOUT_FILENO);
  const tool::TerminalGuard errors(std::cerr, STDERR_FILENO);
  try {
    return Run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "quillmark: there is too little memory\n";
    return 1;
  } catch (const std::exception& error) {
    std::cerr << "quillmark: " << error.what() << '\n';
    return 1;
  }
}
