#include "platform/files/font_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <system_error>

#include "platform/crc32.h"
#include "platform/files/apple_double.h"

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
std::vector<std::string> FindSidecars(const FileAccess& access, const std::string& file) {
  const auto [folder, name] = SplitPath(file);
  std::vector<std::string> found;
  std::string candidate;
  const auto look_at = [&](std::initializer_list<std::string_view> parts) {
    candidate.clear();
    for (const std::string_view part : parts) candidate += part;
    if (access.Status(candidate).regular) found.push_back(candidate);
  };
  look_at({folder, "._", name});
  const std::string normal = NormalPath(file);
  const std::string_view folders = std::string_view(normal).substr(0, normal.rfind('/') + 1);
  for (const std::size_t end : access.FoldersAboveWith(kUnzippedForks, folders)) {
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

// Continues `crc` over a whole fork.
std::uint32_t AddFork(const Fork& fork, std::uint32_t crc, Budget* budget) {
  for (std::uint64_t offset = 0; offset < fork.length();) {
    const Bytes block = fork.BlockAt(offset);
    ChargeBytes(budget, block.size());
    crc = Crc32(crc, block);
    offset += block.size();
  }
  return crc;
}

}  // namespace

const FileStatus& FontFile::Status() {
  if (!status_) status_ = access_.Status(path_);
  return *status_;
}

const std::optional<RegularFile>& FontFile::Data() {
  if (!data_) data_ = Status().regular ? RegularFile::Open(access_, path_) : std::nullopt;
  return *data_;
}

std::optional<Fork> FontFile::DataFork() {
  if (!Data()) return std::nullopt;
  return Fork(*Data());
}

// Lists all names with one call: most files have no attributes, and asking for each of four names would take
// four.
// Lists all names with one call: most files have no attributes, and asking for each of four names would take
// four.
std::optional<std::string> FontFile::Attribute(const std::string& name) {
  if (!attributes_) attributes_ = access_.AttributeNames(path_);
  const bool is_listed = std::ranges::find(*attributes_, name) != attributes_->end();
  return is_listed ? access_.Attribute(path_, name) : std::nullopt;
}

const std::vector<std::string>& FontFile::Sidecars() {
  if (!sidecars_) sidecars_ = FindSidecars(access_, path_);
  return *sidecars_;
}

const std::optional<ResourceForkLocation>& FontFile::ResourceFork() {
  if (!resource_fork_) resource_fork_ = FindResourceFork();
  return *resource_fork_;
}

const FinderInfo& FontFile::Finder() {
  if (!finder_) finder_ = FindFinderInfo();
  return *finder_;
}

const ForkSums& FontFile::Sums() {
  if (sums_) return *sums_;
  ForkSums sums;
  if (const auto data = DataFork()) sums.data_fork = AddFork(*data, 0, access_.budget());
  sums.both_forks = sums.data_fork;
  if (const auto& resources = ResourceFork()) {
    sums.both_forks = AddFork(resources->fork, sums.both_forks, access_.budget());
    sums.has_resource_fork = true;
  }
  sums_ = sums;
  return *sums_;
}

std::uint64_t FontFile::TotalLength() {
  if (!Status().regular) return 0;
  ResourceFork();
  return Status().size + resource_fork_length_;
}

std::optional<Fork> FontFile::OpenFork(const std::string& path) {
  if (!access_.Status(path).regular) return std::nullopt;
  auto file = RegularFile::Open(access_, path);
  if (!file) return std::nullopt;
  return Fork(*std::move(file));
}

std::optional<ResourceForkLocation> FontFile::FindResourceFork() {
  if (!Status().regular) return std::nullopt;
  const auto found = [this](ForkCarrier carrier, const std::string& where, std::optional<Fork> fork,
                            std::uint64_t length) -> std::optional<ResourceForkLocation> {
    resource_fork_length_ = length;
    if (!fork) return std::nullopt;  // it has a length, but cannot be opened
    return ResourceForkLocation{carrier, where, *std::move(fork)};
  };
  // A fork that is a file by itself; nothing when it is missing or empty.
  const auto found_in_file = [&](ForkCarrier carrier, const std::string& path, std::uint64_t size) {
    const auto file = OpenFork(path);
    return found(carrier, path, file ? file->Part(0, size) : std::nullopt, size);
  };
  for (const char* inside : {"/..namedfork/rsrc", "/rsrc"}) {
    const std::string named = path_ + inside;
    const FileStatus status = access_.Status(named);
    if (status.regular && status.size > 0) return found_in_file(ForkCarrier::kNamedFork, named, status.size);
    if (status.error == ENOTDIR) break;  // this file system shows nothing inside a file
  }
  for (const char* name : kResourceForkAttributes) {
    auto value = Attribute(name);
    if (!value || value->empty()) continue;
    const std::uint64_t size = value->size();
    return found(ForkCarrier::kExtendedAttribute, name,
                 Fork(std::make_shared<const std::string>(*std::move(value))), size);
  }
  for (const std::string& sidecar : Sidecars()) {
    const auto file = OpenFork(sidecar);
    const auto entry = file ? FindAppleDoubleEntry(*file, kAppleDoubleResourceFork) : std::nullopt;
    if (entry && entry->length > 0) {
      return found(ForkCarrier::kAppleDouble, sidecar, file->Part(entry->start, entry->length),
                   entry->length);
    }
  }
  const auto [folder, name] = SplitPath(path_);
  const std::string raw = folder + "resource.frk/" + name;
  const FileStatus status = access_.Status(raw);
  if (status.regular && status.size > 0) return found_in_file(ForkCarrier::kRawFork, raw, status.size);
  return std::nullopt;
}

FinderInfo FontFile::FindFinderInfo() {
  if (!Status().regular) return {};
  const auto info = Attribute(kFinderInfoAttribute);
  if (const auto codes = info ? FinderInfoIn(AsBytes(*info)) : std::nullopt) return *codes;
  if (auto metadata = Attribute(kNetatalkMetadataAttribute)) {
    const Fork header(std::make_shared<const std::string>(*std::move(metadata)));
    if (const auto codes = FinderInfoInAppleDouble(header)) return *codes;
  }
  for (const std::string& sidecar : Sidecars()) {
    const auto file = OpenFork(sidecar);
    if (const auto codes = file ? FinderInfoInAppleDouble(*file) : std::nullopt) return *codes;
  }
  return {};
}

bool IsRegularFile(const std::string& path) { return SystemFiles().Status(path).regular; }

}  // namespace quillmark
