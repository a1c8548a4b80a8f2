#include "files/standard_input.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "files/interrupt.h"
#include "reasons/known_formats.h"

namespace quillmark::tool {
namespace {

constexpr int kLookUpMilliseconds = 100;
constexpr std::size_t kStartSize = 16;
// Many times the largest fonts there are.
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;

std::string SystemFault(const std::string& what) { return what + ": " + std::strerror(errno); }

// Hands standard input over piece by piece until `take` refuses one. Returns why its end was not reached.
std::string ReadToEnd(const std::function<bool(Bytes)>& take) {
  const auto stopped = [] { return Interrupted() != 0; };
  std::uint64_t total = 0;
  std::array<std::uint8_t, kBytesAtATime> block;
  while (const ssize_t length = ReadWhenReady(STDIN_FILENO, block, stopped)) {
    if (length < 0) return SystemFault("it cannot be read");
    total += static_cast<std::uint64_t>(length);
    if (total > kMostBytes) return "it is larger than 1 GiB, more than is taken from there";
    if (!take(Bytes(block).first(static_cast<std::size_t>(length)))) return SystemFault("it cannot be held");
  }
  if (stopped()) return "stopped before its end";
  return total == 0 ? "it is empty" : "";
}

bool WriteAll(int descriptor, Bytes bytes) {
  while (!bytes.empty()) {
    const ssize_t done = ::write(descriptor, bytes.data(), bytes.size());
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

std::string NameFor(Bytes start) {
  const std::string_view text = AsText(start);
  if (text.starts_with("ttcf")) return "font.ttc";
  if (text.starts_with("OTTO")) return "font.otf";
  return SfntKind(start) ? "font.ttf" : "font";
}

std::string OfDescriptor(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

}  // namespace

ssize_t ReadWhenReady(int descriptor, std::span<std::uint8_t> block, const std::function<bool()>& stopped) {
  while (!stopped()) {
    pollfd wanted{descriptor, POLLIN, 0};
    if (::poll(&wanted, 1, kLookUpMilliseconds) <= 0) continue;  // also after a signal
    const ssize_t length = ::read(descriptor, block.data(), block.size());
    if (length >= 0 || (errno != EINTR && errno != EAGAIN)) return length;
  }
  return 0;
}

std::string ReadStandardInput(std::string& text) {
  return ReadToEnd([&](Bytes bytes) {
    text.append(AsText(bytes));
    return true;
  });
}

StandardInputFile::StandardInputFile(const std::string& name) {
  if (Fill()) GiveName(name.empty() ? NameFor(AsBytes(start_)) : name);
}

bool StandardInputFile::Fill() {
  contents_ = ::memfd_create("quillmark-standard-input", MFD_CLOEXEC);
  if (contents_ < 0) {
    fault_ = SystemFault("it cannot be held");
    return false;
  }
  fault_ = ReadToEnd([&](Bytes bytes) {
    start_.append(
        AsText(bytes.first(std::min(bytes.size(), kStartSize - std::min(kStartSize, start_.size())))));
    return WriteAll(contents_, bytes);
  });
  return fault_.empty();
}

void StandardInputFile::GiveName(const std::string& name) {
  std::error_code error;
  std::filesystem::path parent = std::filesystem::temp_directory_path(error);
  if (error) parent = "/tmp";
  std::string folder = (parent / "quillmark-XXXXXX").native();
  if (::mkdtemp(folder.data()) == nullptr) {
    fault_ = SystemFault("no folder for it can be made in " + parent.native());
    return;
  }
  folder_ = std::move(folder);
  folder_descriptor_ = ::open(folder_.c_str(), O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
  if (folder_descriptor_ < 0 ||
      ::symlinkat(OfDescriptor(contents_).c_str(), folder_descriptor_, name.c_str()) != 0) {
    fault_ = SystemFault("it cannot be given the name " + name);
    return;
  }
  name_ = name;
  // Not by the folder's own path: what carries forks is also looked for in the folders above, where others
  // may write.
  path_ = OfDescriptor(folder_descriptor_) + '/' + name_;
}

StandardInputFile::~StandardInputFile() {
  if (!name_.empty()) ::unlinkat(folder_descriptor_, name_.c_str(), 0);
  if (folder_descriptor_ >= 0) ::close(folder_descriptor_);
  if (!folder_.empty()) ::rmdir(folder_.c_str());
  if (contents_ >= 0) ::close(contents_);
}

}  // namespace quillmark::tool
