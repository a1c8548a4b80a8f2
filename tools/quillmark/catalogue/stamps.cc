#include "catalogue/stamps.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/crc32.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
// Two seconds, as on FAT, and how far the kernel's clock for files lags behind.
constexpr std::int64_t kLongestTick = 2 * kNanoseconds + kNanoseconds / 20;

constexpr std::string_view kForkAttributes[] = {"user.com.apple.FinderInfo", "user.com.apple.ResourceFork",
                                                "user.org.netatalk.Metadata",
                                                "user.org.netatalk.ResourceFork"};

}  // namespace

std::int64_t InNanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * kNanoseconds + time.tv_nsec;
}

Stamp StampOf(const std::string& path) { return StampIn(AT_FDCWD, path); }

Stamp StampIn(int folder, const std::string& name) {
  struct stat found {};
  Stamp stamp;
  if (name.find('\0') != std::string::npos) return stamp;
  if (::fstatat(folder, name.c_str(), &found, 0) != 0) {
    const bool is_absent = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    stamp.kind = is_absent ? Stamp::kAbsent : -static_cast<std::int64_t>(errno);
    return stamp;
  }
  if (!S_ISREG(found.st_mode)) {
    stamp.kind = static_cast<std::int64_t>(found.st_mode & S_IFMT);
    return stamp;
  }
  stamp.kind = Stamp::kRegular;
  stamp.size = found.st_size;
  stamp.mtime = InNanoseconds(found.st_mtim);
  stamp.ctime = InNanoseconds(found.st_ctim);
  stamp.inode = static_cast<std::int64_t>(found.st_ino);
  return stamp;
}

std::int64_t AttributesOf(const std::string& path) {
  const std::vector<std::string> names = SystemFiles().AttributeNames(path);
  std::uint32_t crc = 0;
  bool has_any = false;
  for (const std::string_view wanted : kForkAttributes) {
    if (std::find(names.begin(), names.end(), wanted) == names.end()) continue;
    const std::string name(wanted);
    const std::string value = SystemFiles().Attribute(path, name).value_or("");
    const std::string length = '\0' + std::to_string(value.size()) + '\0';
    for (const std::string& part : {name, length, value}) crc = Crc32(crc, AsBytes(part));
    has_any = true;
  }
  return has_any ? std::int64_t{crc} + 1 : 0;
}

Stamp WholeStampOf(const std::string& path) {
  Stamp stamp = StampOf(path);
  if (stamp.kind == Stamp::kRegular) stamp.attributes = AttributesOf(path);
  return stamp;
}

bool IsAsKnown(const std::string& path, const Stamp& found, const Stamp& known, StampRules rules) {
  if (found.kind != known.kind || found.kind < 0) return false;
  if (found.kind != Stamp::kRegular) return true;
  if (found.size != known.size || found.mtime != known.mtime) return false;
  if (!rules.ignore_inode && found.inode != known.inode) return false;
  if (!rules.ignore_ctime) return found.ctime == known.ctime;
  return AttributesOf(path) == known.attributes;
}

bool IsUncertainAt(const Stamp& stamp, std::int64_t time) {
  if (stamp.kind != Stamp::kRegular) return false;
  // Anybody can set a time of modification, also one far ahead; the time of change is the file system's own.
  const bool is_modified = stamp.mtime >= time - kLongestTick && stamp.mtime <= time + kLongestTick;
  return is_modified || stamp.ctime >= time - kLongestTick;
}

}  // namespace quillmark::tool
