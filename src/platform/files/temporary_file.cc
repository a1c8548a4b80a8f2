#include "platform/files/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quillmark {

TemporaryFile::TemporaryFile(const std::filesystem::path& folder)
    : path_((folder / ".quillmark-XXXXXX").native()), descriptor_(::mkostemp(path_.data(), O_CLOEXEC)) {}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ < 0) return;
  ::close(descriptor_);
  if (is_there_) ::unlink(path_.c_str());
}

bool TemporaryFile::Write(Bytes bytes) const {
  while (!bytes.empty()) {
    const ssize_t done = ::write(descriptor_, bytes.data(), bytes.size());
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

bool TemporaryFile::Sync() const { return ::fsync(descriptor_) == 0; }

}  // namespace quillmark
