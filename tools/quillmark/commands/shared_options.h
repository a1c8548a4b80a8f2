// Options that several commands take.
#ifndef QUILLMARK_TOOL_COMMANDS_SHARED_OPTIONS_H_
#define QUILLMARK_TOOL_COMMANDS_SHARED_OPTIONS_H_

#include <string>

#include "files/identify_files.h"
#include "output/output.h"

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace quillmark::tool {

// Takes the name of a field.
CLI::Validator AnyField();

// Takes any value but an empty one, which is no `thing`.
CLI::Validator NotEmpty(const std::string& thing);

// --format, --fields and --wide: how faces are written.
void AddOutputForm(CLI::App& command, OutputForm& form);

// --format of a command whose result is no list of faces: `usual`, the default, or json.
void AddResultForm(CLI::App& command, std::string& format, const std::string& usual);

// PATH..., --files-from, -0, --no-recurse, --follow, -j, --progress and -q: which files are identified, and
// what is shown meanwhile. One of the first two must be given; without -j as many are read at the same time
// as there are cores.
void AddFiles(CLI::App& command, FilesOptions& options);

// -j, --progress and -q alone: how files are read whose paths come from elsewhere.
void AddWork(CLI::App& command, FilesOptions& options);

// --name, and with it the path "-": one of the fonts comes from standard input.
void AddStandardInput(CLI::App& command, PathSources& sources);

}  // namespace quillmark::tool

#endif
