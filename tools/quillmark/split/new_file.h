// Writes a file that was not there before, whole or not at all. Tests: tests/cli/split_test.py.
#ifndef QUILLMARK_TOOL_SPLIT_NEW_FILE_H_
#define QUILLMARK_TOOL_SPLIT_NEW_FILE_H_

#include <optional>
#include <string>

#include "platform/byte_reader.h"

namespace quillmark::tool {

// The bytes go to a temporary file in the same folder, which takes the name when all are on the disk; a file
// that has the name by then is never replaced. On failure returns the reason and leaves no file.
std::optional<std::string> WriteNewFile(const std::string& path, Bytes bytes);

}  // namespace quillmark::tool

#endif
