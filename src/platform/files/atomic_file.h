// Replaces a file whole or not at all: the new bytes go to a temporary file beside it, which takes its place
// when everything has reached the disk. Tests: tests/resources/resource_file_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_ATOMIC_FILE_H_
#define QUILLMARK_PLATFORM_FILES_ATOMIC_FILE_H_

#include <functional>
#include <string>

#include "platform/files/forks.h"

namespace quillmark {

// `produce` hands the new bytes to its argument in pieces and gives up, returning false, when that does.
// Permissions and extended attributes are kept. A symbolic link is followed: its target is replaced. False,
// with the old file untouched and no temporary file left, on any failure.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::function<bool(const ByteSink&)>& produce);

}  // namespace quillmark

#endif
