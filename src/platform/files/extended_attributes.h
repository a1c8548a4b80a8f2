// Extended attributes of a file, by whole value: Linux bounds a value to 64 KiB on most file systems, so it
// is held in memory. On a file system without them every file counts as having none. Tests:
// tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FILES_EXTENDED_ATTRIBUTES_H_
#define QUILLMARK_PLATFORM_FILES_EXTENDED_ATTRIBUTES_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

// Symbolic links are followed. Callers have made sure that `path` is a file.
std::vector<std::string> ExtendedAttributeNames(const std::string& path);
std::optional<std::string> ReadExtendedAttribute(const std::string& path, const std::string& name);
// Sets the attribute as a whole: either the old or the new value is there, never a part.
[[nodiscard]] bool WriteExtendedAttribute(const std::string& path, const std::string& name,
                                          std::string_view value);

}  // namespace quillmark

#endif
