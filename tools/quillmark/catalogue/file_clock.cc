#include "catalogue/file_clock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <time.h>

#include <algorithm>
#include <array>

#include "catalogue/stamps.h"

namespace quillmark::tool {
namespace {

// The coarse clock is the one that files get their times from.
std::int64_t MachineNow() {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
  return InNanoseconds(time);
}

}  // namespace

bool IsOnThisMachine(const std::string& path) {
  constexpr std::array<std::uint32_t, 8> kLocal = {
      0xEF53,      // ext2, ext3, ext4
      0x58465342,  // XFS
      0x9123683E,  // Btrfs
      0x01021994,  // tmpfs
      0x2FC12FC1,  // ZFS
      0x794C7630,  // overlay
      0xF2F52010,  // F2FS
      0xCA451A4E,  // bcachefs
  };
  struct statfs system {};
  if (::statfs(path.c_str(), &system) != 0) return false;
  return std::find(kLocal.begin(), kLocal.end(), static_cast<std::uint32_t>(system.f_type)) != kLocal.end();
}

FileClock::FileClock(const std::string& own_file) {
  if (own_file.empty() || IsOnThisMachine(own_file)) return;
  struct stat touched {};
  if (::utimensat(AT_FDCWD, own_file.c_str(), nullptr, 0) != 0 || ::stat(own_file.c_str(), &touched) != 0)
    return;
  device_ = touched.st_dev;
  ahead_ = InNanoseconds(touched.st_mtim) - MachineNow();  // rather too little
}

std::int64_t FileClock::Now(dev_t device) const { return MachineNow() + (device == device_ ? ahead_ : 0); }

}  // namespace quillmark::tool
