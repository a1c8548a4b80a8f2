// Options that several commands take.
#ifndef QUILLMARK_TOOL_SHARED_OPTIONS_H_
#define QUILLMARK_TOOL_SHARED_OPTIONS_H_

#include "font_paths.h"
#include "output.h"

namespace CLI {
class App;
}

namespace quillmark::tool {

// --format and --fields: how faces are written.
void AddOutputForm(CLI::App& command, OutputForm& form);

// PATH..., --files-from and -0: what is read. One of the first two must be given.
void AddPaths(CLI::App& command, PathSources& sources);

// -j: how many files are read at the same time; as many as there are cores when it is not given.
void AddJobs(CLI::App& command, unsigned& jobs);

}  // namespace quillmark::tool

#endif
