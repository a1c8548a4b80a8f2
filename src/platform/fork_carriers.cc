#include "platform/fork_carriers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/apple_double.h"
#include "platform/extended_attributes.h"
#include "platform/file_status.h"

namespace quillmark {
namespace {

using std::filesystem::path;

constexpr std::array kResourceForkAttributes = {"user.com.apple.ResourceFork",
                                                "user.org.netatalk.ResourceFork"};
constexpr char kFinderInfoAttribute[] = "user.com.apple.FinderInfo";
constexpr char kNetatalkMetadataAttribute[] = "user.org.netatalk.Metadata";

// The folder part of a path with its slash, empty for a bare name; and the last component.
std::pair<std::string, std::string> SplitPath(const std::string& whole) {
  const std::size_t slash = whole.rfind('/');
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  return {whole.substr(0, name), whole.substr(name)};
}

// Every path that an AppleDouble sidecar of `file` may have. Unzipping an archive made on a Mac leaves a
// folder __MACOSX that repeats the archive's folders, so it may lie in any folder above the file.
std::vector<std::string> SidecarCandidates(const std::string& file) {
  const auto [folder, name] = SplitPath(file);
  std::vector<std::string> candidates = {folder + "._" + name};
  std::error_code no_working_folder;
  const path absolute = std::filesystem::absolute(file, no_working_folder).lexically_normal();
  if (!no_working_folder) {
    path below;
    for (path ancestor = absolute.parent_path();; ancestor = ancestor.parent_path()) {
      candidates.push_back((ancestor / "__MACOSX" / below / ("._" + name)).string());
      if (!ancestor.has_relative_path()) break;
      below = ancestor.filename() / below;
    }
  }
  candidates.push_back(folder + ".AppleDouble/" + name);
  return candidates;
}

std::optional<FinderInfo> FinderInfoIn(Bytes bytes) {
  const auto type = U32At(bytes, 0);
  const auto creator = U32At(bytes, 4);
  if (!type || !creator) return std::nullopt;
  return FinderInfo{*type, *creator};
}

std::optional<FinderInfo> FinderInfoInAppleDouble(const Fork& file) {
  const auto entry = FindAppleDoubleEntry(file, kAppleDoubleFinderInfo);
  if (!entry) return std::nullopt;
  std::array<std::uint8_t, 8> codes = {};
  const std::size_t wanted = std::min<std::size_t>(codes.size(), entry->length);
  return FinderInfoIn(Bytes(codes).first(file.ReadAt(entry->start, std::span(codes).first(wanted))));
}

}  // namespace

bool ForkCarriers::IsFile() {
  if (!is_file_) is_file_ = IsRegularFile(path_);
  return *is_file_;
}

// One call for all names: asking for each of the four would cost four on the files that have none.
const std::vector<std::string>& ForkCarriers::Attributes() {
  if (!attributes_) attributes_ = ExtendedAttributeNames(path_);
  return *attributes_;
}

bool ForkCarriers::HasAttribute(const std::string& name) {
  const auto& names = Attributes();
  return std::find(names.begin(), names.end(), name) != names.end();
}

const std::vector<std::string>& ForkCarriers::Sidecars() {
  if (!sidecars_) {
    sidecars_ = SidecarCandidates(path_);
    std::erase_if(*sidecars_, [](const std::string& candidate) { return !IsRegularFile(candidate); });
  }
  return *sidecars_;
}

const std::optional<ForkCarriers::Place>& ForkCarriers::ResourceFork() {
  if (!resource_fork_) resource_fork_ = LookForResourceFork();
  return *resource_fork_;
}

const FinderInfo& ForkCarriers::Finder() {
  if (!finder_) finder_ = LookForFinderInfo();
  return *finder_;
}

std::optional<ForkCarriers::Place> ForkCarriers::LookForResourceFork() {
  if (!IsFile()) return std::nullopt;
  for (const char* inside : {"/..namedfork/rsrc", "/rsrc"}) {
    const std::string named = path_ + inside;
    const FileStatus status = StatFile(named);
    if (status.regular && status.size > 0) return Place{ForkCarrier::kNamedFork, named, 0, status.size};
    if (status.error == ENOTDIR) break;  // this file system shows nothing inside a file
  }
  for (const char* name : kResourceForkAttributes) {
    if (!HasAttribute(name)) continue;
    const auto value = ReadExtendedAttribute(path_, name);
    if (value && !value->empty()) return Place{ForkCarrier::kExtendedAttribute, name, 0, value->size()};
  }
  for (const std::string& sidecar : Sidecars()) {
    const auto file = OpenDataFork(sidecar);
    const auto entry = file ? FindAppleDoubleEntry(*file, kAppleDoubleResourceFork) : std::nullopt;
    if (entry && entry->length > 0) {
      return Place{ForkCarrier::kAppleDouble, sidecar, entry->start, entry->length};
    }
  }
  const auto [folder, name] = SplitPath(path_);
  const std::string raw = folder + "resource.frk/" + name;
  const FileStatus status = StatFile(raw);
  if (status.regular && status.size > 0) return Place{ForkCarrier::kRawFork, raw, 0, status.size};
  return std::nullopt;
}

FinderInfo ForkCarriers::LookForFinderInfo() {
  if (!IsFile()) return {};
  if (HasAttribute(kFinderInfoAttribute)) {
    const auto value = ReadExtendedAttribute(path_, kFinderInfoAttribute);
    const auto codes = value ? FinderInfoIn(AsBytes(*value)) : std::nullopt;
    if (codes) return *codes;
  }
  if (HasAttribute(kNetatalkMetadataAttribute)) {
    auto value = ReadExtendedAttribute(path_, kNetatalkMetadataAttribute);
    const auto codes =
        value ? FinderInfoInAppleDouble(Fork(std::make_shared<const std::string>(*std::move(value))))
              : std::nullopt;
    if (codes) return *codes;
  }
  for (const std::string& sidecar : Sidecars()) {
    const auto file = OpenDataFork(sidecar);
    const auto codes = file ? FinderInfoInAppleDouble(*file) : std::nullopt;
    if (codes) return *codes;
  }
  return {};
}

}  // namespace quillmark
