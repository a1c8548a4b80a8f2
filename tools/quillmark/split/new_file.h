// Writes a file that was not there before, whole or not at all. Tests: tests/cli/split_test.py.
#ifndef QUILLMARK_TOOL_SPLIT_NEW_FILE_H_
#define QUILLMARK_TOOL_SPLIT_NEW_FILE_H_

#include <optional>
#include <string>

#include "platform/byte_reader.h"

namespace quillmark::tool {

// The bytes go to a temporary file in the same folder, which takes the name when all are written; a file that
// has the name by then is never replaced. On failure returns the reason and leaves no file.
std::optional<std::string> WriteNewFile(const std::string& path, Bytes bytes);

// Waits until the new files of a folder are on the disk, once for all of them: to wait for each takes
// milliseconds a file. Returns why they are not.
std::optional<std::string> SyncFiles(const std::string& folder);

}  // namespace quillmark::tool

#endif
