// Options that several commands take.
#ifndef QUILLMARK_TOOL_SHARED_OPTIONS_H_
#define QUILLMARK_TOOL_SHARED_OPTIONS_H_

#include <string>

namespace CLI {
class App;
}

namespace quillmark::tool {

// --format: the form in which faces are written, one of kFormats.
void AddFormat(CLI::App& command, std::string& format);

// -j: how many files are read at the same time.
void AddJobs(CLI::App& command, unsigned& jobs);

}  // namespace quillmark::tool

#endif
