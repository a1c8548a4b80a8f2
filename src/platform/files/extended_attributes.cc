#include "platform/files/extended_attributes.h"

#include <sys/types.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>

namespace quillmark {
namespace {

// `read(buffer, size)` behaves as listxattr does: with size 0 it returns the size of the value; it fails with
// ERANGE when the buffer is too small because the value grew in between.
template <typename Read>
std::optional<std::string> ReadGrowing(Read read, std::size_t first_guess) {
  std::string value(first_guess, '\0');
  ssize_t length = read(value.data(), value.size());
  while (length < 0 && errno == ERANGE) {
    const ssize_t needed = read(nullptr, 0);
    if (needed < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(needed));
    length = needed == 0 ? 0 : read(value.data(), value.size());
  }
  if (length < 0) return std::nullopt;
  value.resize(static_cast<std::size_t>(length));
  return value;
}

}  // namespace

std::vector<std::string> ExtendedAttributeNames(const std::string& path) {
  const auto list = ReadGrowing(
      [&](char* buffer, std::size_t size) { return ::listxattr(path.c_str(), buffer, size); }, 1024);
  std::vector<std::string> names;
  if (!list) return names;
  for (std::size_t at = 0; at < list->size();) {
    const std::size_t end = std::min(list->find('\0', at), list->size());
    names.push_back(list->substr(at, end - at));
    at = end + 1;
  }
  return names;
}

std::optional<std::string> ReadExtendedAttribute(const std::string& path, const std::string& name) {
  return ReadGrowing(
      [&](char* buffer, std::size_t size) { return ::getxattr(path.c_str(), name.c_str(), buffer, size); },
      256);
}

bool WriteExtendedAttribute(const std::string& path, const std::string& name, std::string_view value) {
  return ::setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
}

}  // namespace quillmark
