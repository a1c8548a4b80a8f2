// Runs a command line: its words are looked at in their order, so that the first wrong one is told, before
// the parser takes them. Tests: tests/cli/usage_test.py.
#ifndef QUILLMARK_TOOL_COMMANDS_COMMAND_LINE_H_
#define QUILLMARK_TOOL_COMMANDS_COMMAND_LINE_H_

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quillmark::tool {

// Runs the command that `words`, without the program's name, ask for. False for wrong usage, told in a line
// on standard error. Options may stand anywhere before a "--", and what follows that is no option.
bool RunCommandLine(CLI::App& app, const std::vector<std::string>& words);

// Of no command, as an error to be thrown.
[[noreturn]] void ThrowNoCommand(const CLI::App& app, const std::string& word);

}  // namespace quillmark::tool

#endif
