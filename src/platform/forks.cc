// The forks of a file, and what a thread remembers of its look-ups.

#include "platform/forks.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/extended_attributes.h"
#include "platform/file_status.h"
#include "platform/fork_carriers.h"

namespace quillmark {
namespace {

struct Lookups {
  int scopes = 0;
  std::unordered_map<std::string, ForkCarriers> known;
  std::string opened_path;
  std::optional<RegularFile> opened;  // the last one
};

Lookups& ThreadLookups() {
  thread_local Lookups lookups;
  return lookups;
}

// Hands the carriers of `path` to `ask`: the remembered ones inside a scope, else fresh ones.
template <typename Ask>
auto WithCarriers(const std::string& path, Ask ask) {
  Lookups& lookups = ThreadLookups();
  if (lookups.scopes > 0) return ask(lookups.known.try_emplace(path, path).first->second);
  ForkCarriers carriers(path);
  return ask(carriers);
}

std::optional<Fork> OpenPlace(const std::string& path, const ForkCarriers::Place& place) {
  if (place.carrier == ForkCarrier::kExtendedAttribute) {
    auto value = ReadExtendedAttribute(path, place.where);
    if (!value) return std::nullopt;
    return Fork(std::make_shared<const std::string>(*std::move(value)));
  }
  const auto file = OpenDataFork(place.where);
  return file ? file->Part(place.start, place.length) : std::nullopt;
}

}  // namespace

FileStatus StatusOf(const std::string& path) {
  return WithCarriers(path, [](ForkCarriers& carriers) { return carriers.Status(); });
}

bool IsRegularFile(const std::string& path) { return StatusOf(path).regular; }

std::optional<RegularFile> RegularFile::Open(const std::string& path) {
  Lookups& lookups = ThreadLookups();
  if (lookups.scopes == 0) return StatFile(path).regular ? OpenAfresh(path) : std::nullopt;
  if (lookups.opened && lookups.opened_path == path) return lookups.opened;
  auto file = IsRegularFile(path) ? OpenAfresh(path) : std::nullopt;
  if (file) {
    lookups.opened.reset();  // in case memory runs out before the new path stands
    lookups.opened_path = path;
    lookups.opened = file;
  }
  return file;
}

Fork::Fork(RegularFile file, std::uint64_t start, std::uint64_t length)
    : file_(std::move(file)), start_(start), length_(length) {}

Fork::Fork(std::shared_ptr<const std::string> bytes) : bytes_(std::move(bytes)), length_(bytes_->size()) {}

std::size_t Fork::ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const {
  if (offset >= length_) return 0;
  const std::span<std::uint8_t> wanted = out.first(std::min<std::uint64_t>(out.size(), length_ - offset));
  if (file_) return file_->ReadAt(start_ + offset, wanted);
  const auto held = Slice(AsBytes(*bytes_), start_ + offset, wanted.size());
  if (!held) return 0;
  std::copy(held->begin(), held->end(), wanted.begin());
  return wanted.size();
}

Bytes Fork::BlockAt(std::uint64_t offset) const {
  if (offset >= length_) return {};
  const Bytes block = file_ ? file_->BlockAt(start_ + offset) : AsBytes(*bytes_).subspan(start_ + offset);
  return block.first(std::min<std::uint64_t>(block.size(), length_ - offset));
}

std::optional<Fork> Fork::Part(std::uint64_t offset, std::uint64_t length) const {
  if (offset > length_ || length > length_ - offset) return std::nullopt;
  Fork part = *this;
  part.start_ += offset;
  part.length_ = length;
  return part;
}

bool Fork::Copy(std::uint64_t offset, std::uint64_t length, const ByteSink& sink) const {
  constexpr std::uint64_t kBlock = 1 << 16;
  std::vector<std::uint8_t> block(std::min(length, kBlock));
  while (length > 0) {
    const auto piece = std::span(block).first(std::min<std::uint64_t>(length, block.size()));
    if (ReadAt(offset, piece) != piece.size() || !sink(piece)) return false;
    offset += piece.size();
    length -= piece.size();
  }
  return true;
}

std::optional<Fork> OpenDataFork(const std::string& path) {
  auto file = RegularFile::Open(path);
  if (!file) return std::nullopt;
  const std::uint64_t size = file->size();
  return Fork(*std::move(file), 0, size);
}

std::optional<ResourceForkLocation> FindResourceFork(const std::string& path) {
  return WithCarriers(path, [&](ForkCarriers& carriers) -> std::optional<ResourceForkLocation> {
    const auto& place = carriers.ResourceFork();
    auto fork = place ? OpenPlace(path, *place) : std::nullopt;
    if (!fork) return std::nullopt;
    return ResourceForkLocation{place->carrier, place->where, *std::move(fork)};
  });
}

std::optional<Fork> OpenResourceFork(const std::string& path) {
  auto found = FindResourceFork(path);
  if (!found) return std::nullopt;
  return std::move(found->fork);
}

std::uint64_t TotalForkLength(const std::string& path) {
  return WithCarriers(path, [](ForkCarriers& carriers) -> std::uint64_t {
    if (!carriers.Status().regular) return 0;
    const auto& place = carriers.ResourceFork();
    return carriers.Status().size + (place ? place->length : 0);
  });
}

FinderInfo ReadFinderInfo(const std::string& path) {
  return WithCarriers(path, [](ForkCarriers& carriers) { return carriers.Finder(); });
}

ForkLookupScope::ForkLookupScope() { ++ThreadLookups().scopes; }

ForkLookupScope::~ForkLookupScope() {
  if (--ThreadLookups().scopes == 0) ForgetForkLookups();
}

void ForgetForkLookups() {
  ThreadLookups().known.clear();
  ThreadLookups().opened.reset();
}

}  // namespace quillmark
