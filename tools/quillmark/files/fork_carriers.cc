#include "files/fork_carriers.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "platform/text/ascii_case.h"
#include "platform/text/text_encoding.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSidecar = "._";
constexpr std::string_view kUnzipped = "__MACOSX";
constexpr std::size_t kMostNames = 4096;
constexpr const char* kFolders[] = {".AppleDouble", "resource.frk"};

std::string Lower(std::string name) {
  for (char& c : name) c = ToLowerAscii(c);
  return name;
}

}  // namespace

ForkCarriers::ForkCarriers(const std::string& folder, const std::vector<std::string>& names) {
  Place beside{folder + std::string(kSidecar), std::unordered_set<std::string>()};
  for (const std::string& name : names) {
    if (name.starts_with(kSidecar)) AddName(beside, name.substr(kSidecar.size()));
    for (const char* holder : kFolders) {
      if (Lower(name) == Lower(holder)) AddPlace(folder + holder + '/', "");
    }
  }
  if (!beside.names || !beside.names->empty()) places_.push_back(std::move(beside));
  AddUnzipped(folder);
}

ForkCarriers::ForkCarriers(const std::string& folder) {
  places_.push_back({folder + std::string(kSidecar), std::nullopt});
  for (const char* holder : kFolders) places_.push_back({folder + holder + '/', std::nullopt});
  AddUnzipped(folder);
}

void ForkCarriers::AddUnzipped(const std::string& folder) {
  std::error_code error;
  normal_folder_ = fs::absolute(folder.empty() ? "./" : folder, error).lexically_normal().native();
  unzipped_ = SystemFiles().FoldersAboveWith(kUnzipped, normal_folder_);
  for (const std::size_t end : unzipped_) {
    AddPlace(normal_folder_.substr(0, end) + std::string(kUnzipped) + '/' + normal_folder_.substr(end),
             std::string(kSidecar));
  }
}

void ForkCarriers::AddName(Place& place, const std::string& name) {
  if (!place.names) return;
  if (IsAscii(name)) {
    place.names->insert(Lower(name));
  } else {
    place.names.reset();
  }
}

void ForkCarriers::AddPlace(const std::string& folder, const std::string& before_name) {
  Place place{folder + before_name, std::unordered_set<std::string>()};
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().native();
    if (name.starts_with(before_name)) AddName(place, name.substr(before_name.size()));
    // A folder that many others lead to would be held as often.
    if (place.names && place.names->size() > kMostNames) place.names.reset();
    if (!place.names) break;
  }
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) return;
  if (error) place.names.reset();
  if (!place.names || !place.names->empty()) places_.push_back(std::move(place));
}

std::vector<std::string> ForkCarriers::PlacesFor(const std::string& name) const {
  std::vector<std::string> found;
  if (places_.empty()) return found;
  const std::string lower = Lower(name);
  const bool is_ascii = IsAscii(name);
  for (const Place& place : places_) {
    if (!place.names || !is_ascii || place.names->contains(lower)) found.push_back(place.beginning + name);
  }
  return found;
}

FilesWithKnownForks::FilesWithKnownForks(const FileSystem& files, const std::string& path,
                                         const ForkCarriers& carriers)
    : files_(files),
      carriers_(carriers),
      folder_(std::string_view(path).substr(0, path.rfind('/') + 1)),
      name_(std::string_view(path).substr(folder_.size())),
      has_no_forks_(carriers.PlacesFor(std::string(name_)).empty()) {}

// Whether a path is one at which forks of the file are looked for in its own folder.
bool FilesWithKnownForks::IsBeside(std::string_view path) const {
  if (!path.starts_with(folder_) || !path.ends_with(name_)) return false;
  const std::size_t length = path.size() - folder_.size();
  if (length < name_.size()) return false;
  const std::string_view between = path.substr(folder_.size(), length - name_.size());
  return between == kSidecar ||
         std::any_of(std::begin(kFolders), std::end(kFolders),
                     [&](const std::string& folder) { return between == folder + '/'; });
}

FileStatus FilesWithKnownForks::Status(const std::string& path) const {
  if (has_no_forks_ && IsBeside(path)) return {ENOENT};
  return files_.Status(path);
}

std::vector<std::size_t> FilesWithKnownForks::FoldersAboveWith(std::string_view name,
                                                               std::string_view folders) const {
  if (name == kUnzipped && folders == carriers_.normal_folder()) return carriers_.unzipped();
  return files_.FoldersAboveWith(name, folders);
}

}  // namespace quillmark::tool
