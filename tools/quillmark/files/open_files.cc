#include "files/open_files.h"

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

namespace quillmark::tool {
namespace {

// A font file, its sidecar, a family's printer font with its own sidecar, a folder in which one is looked
// for.
constexpr int kFilesOfJob = 8;
// The folder that is walked, the one that is counted, and the tables.
constexpr int kSharedFiles = 4;

int RaisedLimit() {
  constexpr rlim_t kMost = std::numeric_limits<int>::max();
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return static_cast<int>(kMost);
  const rlimit raised{limit.rlim_max, limit.rlim_max};
  if (::setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
  return static_cast<int>(std::min(limit.rlim_cur, kMost));
}

// How many more files can be opened, at most `enough`: files that were open when the process started use up
// the limit, too.
int FilesLeft(int limit, int enough) {
  int left = 0;
  for (int file = 0; file < limit && left < enough; ++file) {
    if (::fcntl(file, F_GETFD) < 0) ++left;
  }
  return left;
}

}  // namespace

unsigned JobsThatCanOpenFiles(unsigned wanted) {
  const int limit = RaisedLimit();
  const int left = FilesLeft(limit, kSharedFiles + static_cast<int>(wanted) * kFilesOfJob);
  const int jobs = (left - kSharedFiles) / kFilesOfJob;
  if (jobs < 1) {
    const int needed = limit - left + kSharedFiles + kFilesOfJob;
    throw std::runtime_error("too few files can be open at the same time (ulimit -n): " +
                             std::to_string(limit) + ", and " + std::to_string(needed) + " are needed");
  }
  return std::min(wanted, static_cast<unsigned>(jobs));
}

}  // namespace quillmark::tool
