// The tool's commands, one function each: it adds the command with its options to the application, and
// parsing runs the command that was named and stores its exit status. A command writes its result to
// standard output and faults to standard error, one line each. Status 0: all that was requested was given; 1:
// something was not. Wrong usage (2) is a CLI::ParseError, which a command may throw too.
#ifndef QUILLMARK_TOOL_COMMANDS_COMMANDS_H_
#define QUILLMARK_TOOL_COMMANDS_COMMANDS_H_

#include <string>

namespace CLI {
class App;
}

namespace quillmark::tool {

// The status of a command that did its work and found fonts in conflict.
inline constexpr int kConflictStatus = 3;

void AddIdentify(CLI::App& app, int& status);
void AddSame(CLI::App& app, int& status);
void AddCompare(CLI::App& app, int& status);
void AddWhy(CLI::App& app, int& status);
void AddSplit(CLI::App& app, int& status);
void AddRead(CLI::App& app, int& status);
void AddResources(CLI::App& app, int& status);
void AddStyles(CLI::App& app, int& status);
void AddClassify(CLI::App& app, int& status);
void AddCatalogue(CLI::App& app, int& status);
void AddFind(CLI::App& app, int& status);
void AddVersion(CLI::App& app, int& status);

// Adds the command help, and to the help of every command that was added before its exit statuses and two
// examples.
void AddHelp(CLI::App& app);

// The line that --version prints: "quillmark 1.4".
std::string VersionLine();

}  // namespace quillmark::tool

#endif
