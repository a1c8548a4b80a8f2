#include "catalogue/recording_files.h"

#include <cerrno>

namespace quillmark::tool {

// Where its forks are looked for by its name.
bool Recording::IsOwnFork(const std::string& path) const {
  const std::string_view name = std::string_view(path_).substr(path_.rfind('/') + 1);
  const std::string_view asked = std::string_view(path).substr(path.rfind('/') + 1);
  return asked == name || (asked.starts_with("._") && asked.substr(2) == name);
}

void Recording::Note(const std::string& path) {
  if (path == path_ || asked_.contains(path) || IsOwnFork(path)) return;
  asked_.emplace(path, WholeStampOf(path));
}

void Recording::NoteInside(const std::string& path, int error) {
  if (error != ENOTDIR) Note(path);
}

// Without any of these no printer font was read; of one the folders __MACOSX above it matter, too.
Companions Recording::Taken() {
  if (asked_.empty()) return {};
  for (const auto& [folders, found] : folders_) {
    for (std::size_t end = folders.size(); end > 0; --end) {
      if (folders[end - 1] != '/') continue;
      const std::string place = folders.substr(0, end) + "__MACOSX";
      asked_.emplace(place, found.contains(end) ? StampOf(place) : Stamp());
    }
  }
  return std::move(asked_);
}

FileStatus RecordingFiles::Status(const std::string& path) const {
  const Stamp& stamp = recording_.stamp();
  if (path == recording_.path() && stamp.kind == Stamp::kRegular) {
    return {0, true, false, static_cast<std::uint64_t>(stamp.size)};
  }
  if (!recording_.IsInside(path)) {
    recording_.Note(path);
    return files_.Status(path);
  }
  const FileStatus status = files_.Status(path);
  recording_.NoteInside(path, status.error);
  return status;
}

std::unique_ptr<OpenedFile> RecordingFiles::Open(const std::string& path) const {
  recording_.Note(path);
  return files_.Open(path);
}

std::vector<std::size_t> RecordingFiles::FoldersAboveWith(std::string_view name,
                                                          std::string_view folders) const {
  std::vector<std::size_t> found = files_.FoldersAboveWith(name, folders);
  recording_.NoteFolders(folders, found);
  return found;
}

std::vector<std::string> RecordingFiles::AttributeNames(const std::string& path) const {
  recording_.Note(path);
  std::vector<std::string> names = files_.AttributeNames(path);
  if (path == recording_.path()) recording_.NoteAttributes(!names.empty());
  return names;
}

std::optional<std::string> RecordingFiles::Attribute(const std::string& path, const std::string& name) const {
  recording_.Note(path);
  return files_.Attribute(path, name);
}

}  // namespace quillmark::tool
