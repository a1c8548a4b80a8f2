#include "catalogue/mount_points.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <utility>

namespace quillmark::tool {
namespace {

// A number for what is mounted there, which lasts as long as that; where the system does not tell it, the
// device. Nothing where the folder cannot be looked at. An empty path is the opened folder itself.
std::optional<std::uint64_t> MountOf(int opened, const char* path) {
  struct statx found {};
  if (::statx(opened, path, AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_MNT_ID, &found) != 0)
    return std::nullopt;
  if ((found.stx_mask & STATX_MNT_ID) != 0) return found.stx_mnt_id;
  return std::uint64_t{found.stx_dev_major} << 32 | found.stx_dev_minor;
}

std::optional<std::uint64_t> MountOf(const std::string& path) { return MountOf(AT_FDCWD, path.c_str()); }

// `path` ends with a slash.
bool IsMountPoint(const std::string& path) {
  const auto mount = MountOf(path);
  return mount && mount != MountOf(path + "..");
}

}  // namespace

MountPoints::MountPoints(Database& database, std::int64_t root, std::string path)
    : root_(root),
      path_(std::move(path)),
      read_(
          database,
          // Part of nothing is null. What lies above the root is above all of its folders.
          "SELECT key, CASE substr(key, 1, 1) WHEN x'2F' THEN EXISTS (SELECT 1 FROM folders WHERE root = "
          "mounts.root) ELSE (SELECT coalesce(substr(folders.key, 1, length(mounts.key)), x'') FROM folders "
          "WHERE root = mounts.root AND folders.key >= mounts.key ORDER BY folders.key LIMIT 1) = key END "
          "FROM mounts WHERE root = ? ORDER BY key"),
      add_(database, "INSERT INTO mounts (root, key) VALUES (?, ?)"),
      remove_(database, "DELETE FROM mounts WHERE root = ? AND key = ?") {
  read_.With(root_);
  while (read_.Step()) known_.insert(read_.Text(0));
  read_.Reset();
}

// The key of a mount point above the root is its path.
std::string MountPoints::PathOf(const std::string& key) const {
  if (key.starts_with('/')) return key;
  std::string path = path_ + key;
  std::replace(path.begin() + static_cast<std::ptrdiff_t>(path_.size()), path.end(), '\0', '/');
  return path;
}

void MountPoints::Add(const std::string& key) {
  if (known_.insert(key).second) add_.Run(root_, Blob{key});
}

// The nearest, unless it is the root of the file system, which is always there.
void MountPoints::AddAbove() {
  std::error_code error;
  std::filesystem::path above = std::filesystem::canonical(path_, error);
  while (!error && above.has_relative_path()) {
    const std::string path = above.native() + '/';
    if (IsMountPoint(path)) return Add(path);
    above = above.parent_path();
  }
}

void MountPoints::Enter(const std::string& key, int opened) {
  const auto mount = opened < 0 ? MountOf(PathOf(key)) : MountOf(opened, "");
  if (!mount || (mount == last_mount_ && key.starts_with(last_key_))) return;
  if (IsMountPoint(path_)) {
    Add("");
  } else {
    AddAbove();
  }
  last_mount_ = MountOf(path_);
  last_key_.clear();
  for (std::size_t end = key.find('\0'); end != std::string::npos; end = key.find('\0', end + 1)) {
    const std::string above = key.substr(0, end + 1);
    const auto its_mount = MountOf(PathOf(above));
    if (!its_mount || its_mount == last_mount_) continue;
    Add(above);
    last_mount_ = its_mount;
    last_key_ = above;
  }
}

std::vector<std::string> MountPoints::Unmounted() {
  std::vector<std::string> unmounted;
  std::vector<std::string> forgotten;
  read_.With(root_);
  while (read_.Step()) {
    const std::string key = read_.Text(0);
    const bool has_files = read_.Integer(1) != 0;
    if (IsMountPoint(PathOf(key))) continue;
    if (has_files) {
      unmounted.push_back(PathOf(key));
    } else {
      forgotten.push_back(key);
    }
  }
  read_.Reset();
  for (const std::string& key : forgotten) remove_.Run(root_, Blob{key});
  return unmounted;
}

void MountPoints::ForgetUnmounted() {
  std::erase_if(known_, [this](const std::string& key) {
    const bool is_forgotten = !IsMountPoint(PathOf(key));
    if (is_forgotten) remove_.Run(root_, Blob{key});
    return is_forgotten;
  });
}

}  // namespace quillmark::tool
