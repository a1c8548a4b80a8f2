// The line that --version prints.
#ifndef QUILLMARK_TOOL_COMMANDS_VERSION_H_
#define QUILLMARK_TOOL_COMMANDS_VERSION_H_

#include <string>

namespace quillmark::tool {

// "quillmark 1.4".
std::string VersionLine();

}  // namespace quillmark::tool

#endif
