#include "files/path_list.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "files/standard_input.h"

namespace quillmark::tool {
namespace {

// No path of the system is nearly as long: what is longer is no list of paths.
constexpr std::size_t kLongestPath = std::size_t{64} * 1024;

}  // namespace

PathList::PathList(std::string file, char separator, std::function<bool()> stopped, std::string item)
    : file_(std::move(file)),
      separator_(separator),
      stopped_(std::move(stopped)),
      item_(std::move(item)),
      descriptor_(file_ == kStandardInputPath ? STDIN_FILENO : ::open(file_.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) Fail(std::strerror(errno));
}

PathList::~PathList() {
  if (descriptor_ > STDIN_FILENO) ::close(descriptor_);
}

void PathList::Fail(const std::string& why) {
  fault_ = "the list cannot be read: " + why;
  ended_ = true;
  read_.clear();
  begin_ = 0;
}

// Reads more of the list. False when there is no more.
bool PathList::Fill() {
  read_.erase(0, begin_);
  begin_ = 0;
  if (ended_) return false;
  std::array<std::uint8_t, kBytesAtATime> block;
  const ssize_t length = ReadWhenReady(descriptor_, block, stopped_);
  if (length < 0) Fail(std::strerror(errno));
  ended_ = length <= 0;
  if (length > 0) read_.append(block.begin(), block.begin() + length);
  return !ended_;
}

std::optional<std::string> PathList::Next() {
  std::size_t searched = begin_;
  while (fault_.empty() && !stopped_()) {
    std::size_t end = read_.find(separator_, searched);
    if (end == std::string::npos) {
      searched = read_.size() - begin_;
      if (searched > kLongestPath) {
        Fail("a line is too long for a " + item_);
        break;
      }
      if (Fill()) continue;
      if (stopped_() || begin_ == read_.size()) break;
      end = read_.size();  // the last path may lack its separator
    }
    std::string path = read_.substr(begin_, end - begin_);
    searched = begin_ = std::min(end + 1, read_.size());
    if (path.find('\0') != std::string::npos) {
      Fail("it holds a NUL; " + item_ + "s separated by NUL need -0");
      break;
    }
    if (!path.empty()) return path;
  }
  return std::nullopt;
}

}  // namespace quillmark::tool
