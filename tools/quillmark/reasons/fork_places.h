// What is said of files that lost a resource fork, or carry that of another file. Tests:
// tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASONS_FORK_PLACES_H_
#define QUILLMARK_TOOL_REASONS_FORK_PLACES_H_

#include <optional>
#include <string>

namespace quillmark::tool {

// Of a file whose data fork is empty, and for which no resource fork is anywhere: where it was looked for.
std::string NoForkAnywhere(const std::string& path);

// Of an AppleDouble file: which file's resource fork it carries; nothing when it is none.
std::optional<std::string> WhySidecar(const std::string& path);

}  // namespace quillmark::tool

#endif
