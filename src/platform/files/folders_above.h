// Which of the folders above a file hold something of a name, in time that grows with their number alone: a
// path's length counts for each call with it, so asking by whole paths costs the square of the depth. Tests:
// tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_FOLDERS_ABOVE_H_
#define QUILLMARK_PLATFORM_FILES_FOLDERS_ABOVE_H_

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillmark {

// `path` begins and ends with "/" and has no empty part, or is empty. The answer tells where in it the path
// of each folder ends, "/" included, that holds `name` or of which that cannot be told: the last one first.
std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view path);

}  // namespace quillmark

#endif
