// Runs a command line. Its words are checked in their order before the parser gets them, so that the first
// wrong one is reported. Tests: tests/cli/usage_test.py.
#ifndef QUILLMARK_TOOL_COMMANDS_COMMAND_LINE_H_
#define QUILLMARK_TOOL_COMMANDS_COMMAND_LINE_H_

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quillmark::tool {

// Runs the command that `words`, without the program's name, ask for. False for wrong usage, reported in a
// line on standard error. Options may stand anywhere before a "--", and what follows that is no option.
bool RunCommandLine(CLI::App& app, const std::vector<std::string>& words);

// The command of a name among those of another one. "catalog" is "catalogue".
const CLI::App& CommandNamed(const CLI::App& of, const std::string& name);

}  // namespace quillmark::tool

#endif
