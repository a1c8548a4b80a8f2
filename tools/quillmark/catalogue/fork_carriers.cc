#include "catalogue/fork_carriers.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/files/file_system.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSidecar = "._";
constexpr const char* kFolders[] = {".AppleDouble", "resource.frk"};

std::string Lower(std::string name) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

}  // namespace

ForkCarriers::ForkCarriers(const std::string& folder, const std::vector<std::string>& names) {
  Place beside{folder + kSidecar, std::unordered_set<std::string>()};
  for (const std::string& name : names) {
    if (name.starts_with(kSidecar)) beside.names->insert(Lower(name.substr(2)));
    for (const char* holder : kFolders) {
      if (Lower(name) == Lower(holder)) AddPlace(folder + holder + '/', "");
    }
  }
  if (!beside.names->empty()) places_.push_back(std::move(beside));
  AddUnzipped(folder);
}

ForkCarriers::ForkCarriers(const std::string& folder) {
  places_.push_back({folder + kSidecar, std::nullopt});
  for (const char* holder : kFolders) places_.push_back({folder + holder + '/', std::nullopt});
  AddUnzipped(folder);
}

void ForkCarriers::AddUnzipped(const std::string& folder) {
  // As the library looks for them: from the path without "." and "..", links not looked at.
  const std::string normal = fs::path(folder).lexically_normal().native();
  for (const std::size_t end : SystemFiles().FoldersAboveWith("__MACOSX", normal)) {
    AddPlace(normal.substr(0, end) + "__MACOSX/" + normal.substr(end), kSidecar);
  }
}

void ForkCarriers::AddPlace(const std::string& folder, const std::string& before_name) {
  Place place{folder + before_name, std::unordered_set<std::string>()};
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().native();
    if (name.starts_with(before_name)) place.names->insert(Lower(name.substr(before_name.size())));
  }
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) return;
  if (error) place.names.reset();
  if (!place.names || !place.names->empty()) places_.push_back(std::move(place));
}

Companions ForkCarriers::Of(const std::string& name) const {
  Companions found;
  if (places_.empty()) return found;
  const std::string lower = Lower(name);
  for (const Place& place : places_) {
    if (place.names && !place.names->contains(lower)) continue;
    const std::string path = place.beginning + name;
    const Stamp stamp = StampOf(path);
    if (stamp.kind != Stamp::kAbsent) found.emplace(path, stamp);
  }
  return found;
}

}  // namespace quillmark::tool
