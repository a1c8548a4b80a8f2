#include "catalogue/catalogue_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "catalogue/schema.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNewEnding = ".new-";

[[noreturn]] void ThrowFor(const std::string& path, const std::string& what) {
  throw DatabaseError(Printable(path) + ": " + what);
}

bool Exists(const std::string& path) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0;
}

// The log beside the file needs memory that all its users share: only on one machine's file systems.
bool IsLocal(const std::string& path) {
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

// Removes what killed processes began to make.
void RemoveUnfinished(const fs::path& catalogue) {
  const std::string beginning = catalogue.filename().native() + kNewEnding;
  std::error_code error;
  std::error_code ignored;
  for (fs::directory_iterator it(catalogue.parent_path(), error), end; !error && it != end;
       it.increment(error)) {
    if (it->path().filename().native().starts_with(beginning)) fs::remove(it->path(), ignored);
  }
}

// Under another name first, so that what stands under the right one is a catalogue at any time. Never
// replaces a file.
void MakeCatalogue(const std::string& path) {
  RemoveUnfinished(path);
  const std::string unfinished = path + kNewEnding + std::to_string(::getpid());
  const auto remove = [&] {
    ::unlink(unfinished.c_str());
    ::unlink((unfinished + "-journal").c_str());
  };
  try {
    Database database(unfinished, Database::Access::kCreate);
    CreateSchema(database);
  } catch (...) {
    remove();
    throw;
  }
  int error =
      ::renameat2(AT_FDCWD, unfinished.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
  if ((error == EINVAL || error == ENOSYS) && !Exists(path)) {
    error = ::rename(unfinished.c_str(), path.c_str()) == 0 ? 0 : errno;
  }
  if (error == 0) return;
  remove();
  ThrowFor(path, std::string("the catalogue cannot be made: ") + std::strerror(error));
}

}  // namespace

std::string CataloguePath(const std::string& path) {
  const fs::path whole = fs::absolute(path);
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(whole, error);
  return (error ? whole : canonical).native();
}

Database OpenCatalogue(const std::string& path) {
  const std::string whole = CataloguePath(path);
  if (!Exists(whole)) {
    ThrowFor(path, "no such catalogue; quillmark catalogue update makes one");
  }
  Database database(whole, Database::Access::kRead);
  CheckSchema(database);
  return database;
}

UpdateLock::UpdateLock(const std::string& catalogue) {
  const std::string path = catalogue + ".lock";
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
  if (descriptor_ < 0) {
    ThrowFor(catalogue, std::string("the catalogue cannot be written: ") + std::strerror(errno));
  }
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int error = errno;
  ::close(descriptor_);
  ThrowFor(catalogue, error == EWOULDBLOCK
                          ? "another update of the catalogue is at work"
                          : std::string("the catalogue cannot be locked: ") + std::strerror(error));
}

UpdateLock::~UpdateLock() { ::close(descriptor_); }

UpdatedCatalogue::UpdatedCatalogue(const std::string& path, IfMissing if_missing) {
  const std::string whole = CataloguePath(path);
  // Before anything is written beside a file that is no catalogue.
  if (Exists(whole) || if_missing == IfMissing::kFail) OpenCatalogue(whole);
  lock_.emplace(whole);
  if (!Exists(whole)) MakeCatalogue(whole);
  database_.emplace(whole, Database::Access::kWrite);
  CheckSchema(*database_);
  // By this SQLite tries to write, which shows at once whether that is allowed.
  if (IsLocal(whole)) database_->Run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  const Transaction tried(*database_);
}

// Readers that are at work keep the log; the next update ends it then.
UpdatedCatalogue::~UpdatedCatalogue() {
  try {
    database_->Run("PRAGMA busy_timeout = 500; PRAGMA wal_checkpoint(TRUNCATE)");
    database_->Run("PRAGMA journal_mode = DELETE");
  } catch (const std::exception&) {
    // All that was committed stays readable from the log.
  }
}

bool UpdatedCatalogue::IsOwnName(const std::string& catalogue_name, const std::string& name) {
  if (!name.starts_with(catalogue_name)) return false;
  const std::string ending = name.substr(catalogue_name.size());
  return ending.empty() || ending == "-wal" || ending == "-shm" || ending == "-journal" ||
         ending == ".lock" || ending.starts_with(kNewEnding);
}

}  // namespace quillmark::tool
