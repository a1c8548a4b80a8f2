// Opens and reads regular files, and nothing else: no device or FIFO is opened, and no read blocks.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/file_status.h"
#include "platform/forks.h"

namespace quillmark {

FileStatus StatFile(const std::string& path) {
  FileStatus status;
  struct stat found = {};
  if (path.find('\0') != std::string::npos) {
    status.error = ENOENT;
  } else if (::stat(path.c_str(), &found) != 0) {
    status.error = errno;
  } else if (S_ISREG(found.st_mode)) {
    status.regular = true;
    status.size = static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0));
  } else {
    status.directory = S_ISDIR(found.st_mode);
  }
  return status;
}

bool IsRegularFile(const std::string& path) { return StatFile(path).regular; }

class RegularFile::Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

RegularFile::RegularFile(std::shared_ptr<const Descriptor> descriptor, std::uint64_t size)
    : descriptor_(std::move(descriptor)), size_(size) {}

std::optional<RegularFile> RegularFile::Open(const std::string& path) {
  if (!IsRegularFile(path)) return std::nullopt;
  int number = -1;
  do {
    // Something else may have come to the path since: O_NONBLOCK and O_NOCTTY keep even that harmless.
    number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  } while (number < 0 && errno == EINTR);
  if (number < 0) return std::nullopt;
  auto descriptor = std::make_shared<const Descriptor>(number);
  struct stat found = {};
  if (::fstat(number, &found) != 0 || !S_ISREG(found.st_mode)) return std::nullopt;
  return RegularFile(std::move(descriptor), static_cast<std::uint64_t>(std::max<off_t>(found.st_size, 0)));
}

std::size_t RegularFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const {
  std::size_t done = 0;
  while (done < out.size()) {
    const std::uint64_t at = offset + done;
    if (at > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) break;
    const std::span<std::uint8_t> rest = out.subspan(done);
    const ssize_t came = ::pread(descriptor_->number(), rest.data(), rest.size(), static_cast<off_t>(at));
    if (came < 0 && errno == EINTR) continue;
    if (came <= 0) break;
    done += static_cast<std::size_t>(came);
  }
  return done;
}

}  // namespace quillmark
