#include "reasons/watched_files.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "text/printable.h"

namespace quillmark::tool {

class WatchedFiles::WatchedFile : public OpenedFile {
 public:
  WatchedFile(const WatchedFiles& files, std::string path, std::unique_ptr<OpenedFile> file)
      : files_(files), path_(std::move(path)), file_(std::move(file)) {}

  std::uint64_t size() const override { return file_->size(); }
  ReadResult ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    const ReadResult result = file_->ReadAt(offset, out);
    if (result.error != 0) files_.Note(path_, result.error);
    return result;
  }

 private:
  const WatchedFiles& files_;
  const std::string path_;
  const std::unique_ptr<OpenedFile> file_;
};

void WatchedFiles::Note(const std::string& path, int error) const {
  if (!failure_) failure_ = Failure{path, error};
}

std::string WatchedFiles::WhyUnread(const std::string& path) const {
  if (!failure_) return {};
  const bool is_itself = failure_->path == path;
  if (is_itself && failure_->error == EACCES) return "no permission to read it";
  return (is_itself ? "" : Printable(failure_->path) + " ") + std::string("cannot be read: ") +
         std::strerror(failure_->error);
}

std::unique_ptr<OpenedFile> WatchedFiles::Open(const std::string& path) const {
  auto file = system_.Open(path);
  if (file) return std::make_unique<WatchedFile>(*this, path, std::move(file));
  // A file that disappears between two calls counts as absent, and EINVAL means what is no regular file.
  if (errno != ENOENT && errno != ENOTDIR && errno != EINVAL) Note(path, errno);
  return nullptr;
}

}  // namespace quillmark::tool
