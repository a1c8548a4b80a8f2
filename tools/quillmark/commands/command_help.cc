// The help of commands beyond their options: exit statuses and two examples; and the command that prints
// help. Tests: tests/cli/usage_test.py.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "commands/command_line.h"
#include "commands/commands.h"

namespace quillmark::tool {
namespace {

struct CommandHelp {
  const char* command;
  const char* statuses;  // besides wrong usage
  const char* examples[2];
};

constexpr CommandHelp kHelp[] = {
    {"identify",
     "  0  every named file gave its faces\n"
     "  1  one did not, a file or folder could not be read, or no face was found at all\n"
     "  130, 143  stopped by a signal; what was found so far is whole\n",
     {"quillmark identify ~/fonts Garamond.otf",
      "quillmark identify --format tsv --fields postScriptName,version,checksum --sort family fonts"}},
    {"same",
     "  0  no conflict\n"
     "  1  a named file gave no face, a file or folder could not be read, or no face was found at all\n"
     "  3  conflicts were found\n"
     "  130, 143  stopped by a signal, without a list\n",
     {"quillmark same ~/fonts /srv/fonts", "quillmark same --format json --near fonts > same.json"}},
    {"find",
     "  0  every name is found, as one font or copies of it\n"
     "  1  something could not be read\n"
     "  3  a name stands for different fonts\n"
     "  4  a name is missing, or only near ones are there\n"
     "  130, 143  stopped by a signal\n",
     {"quillmark find --in ~/fonts 'Garamond Bold Italic'",
      "quillmark find --catalogue fonts.db --names-from names.txt"}},
    {"catalogue",
     "  0  the command did its work\n"
     "  1  it did not, or something could not be read\n",
     {"quillmark catalogue update fonts.db ~/fonts", "quillmark catalogue list fonts.db"}},
    {"catalogue update",
     "  0  the catalogue is up to date\n"
     "  1  a file could not be read, a folder not listed, or the catalogue not written\n"
     "  130, 143  stopped by a signal; the next update goes on from there\n",
     {"quillmark catalogue update fonts.db ~/fonts /srv/fonts", "quillmark catalogue update fonts.db"}},
    {"catalogue list",
     "  0  the faces were written\n"
     "  1  there is no such catalogue, it cannot be read, or it lacks what could not be read\n",
     {"quillmark catalogue list fonts.db", "quillmark catalogue list --format jsonl fonts.db"}},
    {"catalogue changes",
     "  0  the changes were written\n"
     "  1  there is no such catalogue, or it cannot be read\n",
     {"quillmark catalogue changes fonts.db",
      "quillmark catalogue changes --since 0 --format json fonts.db"}},
    {"catalogue info",
     "  0  it was told\n"
     "  1  there is no such catalogue, it cannot be read, or it lacks what could not be read\n",
     {"quillmark catalogue info fonts.db", "quillmark catalogue info --format json fonts.db"}},
    {"catalogue verify",
     "  0  every file gives what the catalogue says\n"
     "  1  a file could not be read\n"
     "  3  a file gives something else; the next update reads it\n"
     "  130, 143  stopped by a signal\n",
     {"quillmark catalogue verify fonts.db", "quillmark catalogue verify --sample 500 fonts.db"}},
    {"catalogue merge",
     "  0  all were merged\n"
     "  1  one was not; the catalogue is as it was\n",
     {"quillmark catalogue merge all.db mac=mac.db",
      "quillmark catalogue merge all.db mac=mac.db attic=attic.db"}},
    {"compare",
     "  0  all agrees\n"
     "  1  nothing to compare\n"
     "  3  something conflicts\n",
     {"quillmark compare old/Garamond.otf new/Garamond.otf",
      "quillmark compare --format json Garamond.otf stored.xml"}},
    {"why",
     "  0  every path was explained\n"
     "  1  one could not be looked at\n",
     {"quillmark why Garamond.woff2", "quillmark why ~/fonts"}},
    {"split",
     "  0  every font was written\n"
     "  1  one was not\n",
     {"quillmark split -o faces uming.ttc", "quillmark split Garamond.dfont"}},
    {"read",
     "  0  the faces were written\n"
     "  1  the text holds none, or cannot be read\n",
     {"quillmark read --format json stored.xml",
      "quillmark identify --format json fonts | quillmark read --format plist -"}},
    {"resources",
     "  0  the resource map was written\n"
     "  1  the file has none\n",
     {"quillmark resources Garamond.dfont", "quillmark resources --format json Garamond"}},
    {"styles",
     "  0  the names tell a style\n"
     "  1  they tell none\n",
     {"quillmark styles Minion-BoldItalic", "quillmark styles --format json Minion-Bd 'Minion Bold'"}},
    {"classify",
     "  0  the class is known\n"
     "  1  it is not\n",
     {"quillmark classify Helvetica", "quillmark classify 'Neue Helvetica' Helvetica"}},
    {"version",
     "  0  all tables were loaded\n"
     "  1  one is missing or cannot be read\n",
     {"quillmark version", "quillmark version --format json"}},
    {"help", "  0  help was printed\n", {"quillmark help", "quillmark help identify"}},
};

std::string Footer(const CommandHelp& help) {
  return std::string("Exit status:\n") + help.statuses +
         "  2  wrong usage; nothing was read\n\nExamples:\n  " + help.examples[0] + "\n  " + help.examples[1];
}

}  // namespace

void AddHelp(CLI::App& app) {
  CLI::App* const help = app.add_subcommand("help", "Print what the tool or a command takes");
  const auto names = std::make_shared<std::vector<std::string>>();
  help->add_option("COMMAND", *names, "Command to tell of");
  help->callback([&app, names] {
    const CLI::App* of = &app;
    std::string whole_name = app.get_name();
    for (const std::string& name : *names) {
      of = &CommandNamed(*of, name);
      whole_name += ' ' + of->get_name();
    }
    std::cout << of->get_formatter()->make_help(of, whole_name, CLI::AppFormatMode::Normal);
  });
  for (const CommandHelp& texts : kHelp) {
    CLI::App* command = &app;
    for (const std::string& name : CLI::detail::split(texts.command, ' '))
      command = command->get_subcommand(name);
    command->footer(Footer(texts));
  }
  app.footer("quillmark help COMMAND tells the options, exit statuses and examples of a command.");
}

}  // namespace quillmark::tool
