// The help of commands beyond their options: exit statuses and two examples; and the command that prints
// help. Tests: tests/cli/usage_test.py.
#ifndef QUILLMARK_TOOL_COMMANDS_COMMAND_HELP_H_
#define QUILLMARK_TOOL_COMMANDS_COMMAND_HELP_H_

namespace CLI {
class App;
}

namespace quillmark::tool {

// Adds the command help, and to the help of every command its exit statuses and examples.
void AddHelp(CLI::App& app);

}  // namespace quillmark::tool

#endif
