#include "platform/fork_carriers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/apple_double.h"
#include "platform/extended_attributes.h"
#include "platform/folders_above.h"

namespace quillmark {
namespace {

constexpr std::array kResourceForkAttributes = {"user.com.apple.ResourceFork",
                                                "user.org.netatalk.ResourceFork"};
constexpr char kFinderInfoAttribute[] = "user.com.apple.FinderInfo";
constexpr char kNetatalkMetadataAttribute[] = "user.org.netatalk.Metadata";
constexpr std::string_view kUnzippedForks = "__MACOSX";

// The folder part of a path with its slash, empty for a bare name; and the last component.
std::pair<std::string, std::string> SplitPath(const std::string& whole) {
  const std::size_t slash = whole.rfind('/');
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  return {whole.substr(0, name), whole.substr(name)};
}

// The path from the root without "." and "..", links not looked at; empty when there is no working folder.
std::string NormalPath(const std::string& file) {
  const bool is_normal = file.starts_with('/') && file.find("//") == std::string::npos &&
                         file.find("/.") == std::string::npos && !file.ends_with('/');
  if (is_normal) return file;
  std::error_code no_working_folder;
  const auto absolute = std::filesystem::absolute(file, no_working_folder);
  return no_working_folder ? std::string() : absolute.lexically_normal().string();
}

// Every sidecar of `file` that exists, in the order they are searched. Unzipping an archive made on a Mac
// leaves a folder __MACOSX that repeats the archive's folders, so it may lie in any folder above the file.
std::vector<std::string> FindSidecars(const std::string& file) {
  const auto [folder, name] = SplitPath(file);
  std::vector<std::string> found;
  std::string candidate;
  const auto look_at = [&](std::initializer_list<std::string_view> parts) {
    candidate.clear();
    for (const std::string_view part : parts) candidate += part;
    if (StatFile(candidate).regular) found.push_back(candidate);
  };
  look_at({folder, "._", name});
  const std::string normal = NormalPath(file);
  const std::string_view folders = std::string_view(normal).substr(0, normal.rfind('/') + 1);
  for (const std::size_t end : FoldersAboveWith(kUnzippedForks, folders)) {
    look_at({folders.substr(0, end), kUnzippedForks, "/", folders.substr(end), "._", name});
  }
  look_at({folder, ".AppleDouble/", name});
  return found;
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

const FileStatus& ForkCarriers::Status() {
  if (!status_) status_ = StatFile(path_);
  return *status_;
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
  if (!sidecars_) sidecars_ = FindSidecars(path_);
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
  if (!Status().regular) return std::nullopt;
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
  if (!Status().regular) return {};
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
