// Options that several commands take.
#ifndef QUILLMARK_TOOL_SHARED_OPTIONS_H_
#define QUILLMARK_TOOL_SHARED_OPTIONS_H_

#include "identify_files.h"
#include "output.h"

namespace CLI {
class App;
}

namespace quillmark::tool {

// --format, --fields and --wide: how faces are written.
void AddOutputForm(CLI::App& command, OutputForm& form);

// PATH..., --files-from, -0, -j, --progress and -q: which files are identified, and what is told meanwhile.
// One of the first two must be given; without -j as many are read at the same time as there are cores.
void AddFiles(CLI::App& command, FilesOptions& options);

}  // namespace quillmark::tool

#endif
