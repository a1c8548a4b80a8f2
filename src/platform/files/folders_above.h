// Which of the folders above a file hold an entry of a given name, in time linear in their number: the system
// walks a path in full at each call, so asking by whole paths would cost the square of the depth. Tests:
// tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_FOLDERS_ABOVE_H_
#define QUILLMARK_PLATFORM_FILES_FOLDERS_ABOVE_H_

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillmark {

// `path` begins and ends with "/" and has no empty part, or is empty. Returns the lengths of the paths, "/"
// included, of the folders that hold `name` or may hold it: the longest first.
std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view path);

}  // namespace quillmark

#endif
