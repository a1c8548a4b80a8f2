// Why a file gave no face, in a sentence that a person can act on. Each reason follows the library's own
// steps: what it says is what kept the library from reading a face. Only beginnings and tables of files are
// read. Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASON_H_
#define QUILLMARK_TOOL_REASON_H_

#include <optional>
#include <string>

namespace quillmark::tool {

// `path` gave no face. No line end, no path in front.
std::string WhyNoFace(const std::string& path);

// Why `path` is no regular file that can be read; nothing when it is one.
std::optional<std::string> WhyNotReadable(const std::string& path);

// Whether anything can be said of what is at `path`: it is there, and its bytes, if it has any, can be read.
bool CanBeLookedAt(const std::string& path);

// A path as it may be shown on a terminal.
std::string ShownPath(const std::string& path);

}  // namespace quillmark::tool

#endif
