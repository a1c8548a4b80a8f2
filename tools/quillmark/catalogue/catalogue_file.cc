#include "catalogue/catalogue_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "catalogue/file_clock.h"
#include "catalogue/own_files.h"
#include "catalogue/schema.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowFor(const std::string& path, const std::string& what) {
  throw DatabaseError(Printable(path) + ": " + what);
}

bool Exists(const std::string& path) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0;
}

Database Opened(const std::string& path, Database::Access access) {
  Database database(path, access);
  CheckSchema(database);
  return database;
}

void RemoveWithJournal(const std::string& path) {
  ::unlink(path.c_str());
  ::unlink((path + "-journal").c_str());
}

// Whether a file that has the name for it is a catalogue that a killed process began to make.
bool IsUnfinished(const fs::path& path) {
  std::error_code ignored;
  if (fs::symlink_status(path, ignored).type() != fs::file_type::regular) return false;
  if (fs::is_empty(path, ignored)) return true;
  try {
    const std::string header = DatabaseHeader(path.native());
    if (!header.empty() && !MayBeCatalogue(header)) return false;
    return !Opened(path, Database::Access::kReadAsIs).Number("SELECT 1 FROM runs LIMIT 1");
  } catch (const DatabaseError&) {
    return Exists(path.native() + "-journal");
  }
}

void RemoveUnfinished(const fs::path& catalogue) {
  const std::string beginning = catalogue.filename().native();
  std::error_code error;
  for (fs::directory_iterator it(catalogue.parent_path(), error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().native();
    if (!name.starts_with(beginning) || !IsNewEnding(name.substr(beginning.size()))) continue;
    if (IsUnfinished(it->path())) RemoveWithJournal(it->path());
  }
}

// An empty file, under a name that nothing had.
std::string MakeFileBeside(const std::string& catalogue) {
  for (std::int64_t number = ::getpid();; ++number) {
    std::string path = catalogue + std::string(kNewEnding) + std::to_string(number);
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno == EEXIST) continue;
    if (descriptor < 0) {
      ThrowFor(catalogue, std::string("the catalogue cannot be made: ") + std::strerror(errno));
    }
    ::close(descriptor);
    return path;
  }
}

// Of a file that is not open.
void Synchronise(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  const bool is_done = descriptor >= 0 && ::fsync(descriptor) == 0;
  const int error = errno;
  if (descriptor >= 0) ::close(descriptor);
  if (!is_done) ThrowFor(path, std::string("the catalogue cannot be written: ") + std::strerror(error));
}

// Under another name first, so that what stands under the right one is a catalogue at any time. Never
// replaces a file.
void MakeCatalogue(const std::string& path) {
  RemoveUnfinished(path);
  const std::string unfinished = MakeFileBeside(path);
  try {
    {
      Database database(unfinished, Database::Access::kCreate);
      // As it is not yet of use, all is synchronised at once at its end.
      database.Run("PRAGMA synchronous = OFF");
      CreateSchema(database);
    }
    Synchronise(unfinished);
  } catch (...) {
    RemoveWithJournal(unfinished);
    throw;
  }
  std::error_code ignored;
  int error =
      ::renameat2(AT_FDCWD, unfinished.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
  if ((error == EINVAL || error == ENOSYS) &&
      fs::symlink_status(path, ignored).type() == fs::file_type::not_found) {
    error = ::rename(unfinished.c_str(), path.c_str()) == 0 ? 0 : errno;
  }
  if (error == 0) return;
  RemoveWithJournal(unfinished);
  ThrowFor(path, std::string("the catalogue cannot be made: ") + std::strerror(error));
}

// Throws unless there is a catalogue. Opening a database in the usual way plays back a journal that another
// program may have left beside it, so that a file that is none of ours is not opened so.
void CheckFile(const std::string& whole, const std::string& given) {
  struct stat found {};
  if (::stat(whole.c_str(), &found) != 0) {
    if (errno == ENOENT) ThrowFor(given, "no such catalogue; quillmark catalogue update makes one");
    ThrowFor(whole, std::string("the catalogue cannot be opened: ") + std::strerror(errno));
  }
  if (!S_ISREG(found.st_mode)) ThrowFor(whole, "not a catalogue");
  CheckHeader(whole, DatabaseHeader(whole));
}

// The lock and the log beside a file are found by its name.
void CheckHasOneName(const std::string& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) == 0 && found.st_nlink > 1) {
    ThrowFor(path,
             "the catalogue has several hard links, of which updates would not know each other; leave one");
  }
}

}  // namespace

std::string CataloguePath(const std::string& path) {
  std::error_code error;
  const fs::path whole = fs::absolute(path, error);
  if (error) ThrowFor(path, "there is no working folder: " + error.message());
  const fs::path canonical = fs::weakly_canonical(whole, error);
  return (error ? whole : canonical).native();
}

Database OpenCatalogue(const std::string& path) {
  const std::string whole = CataloguePath(path);
  CheckFile(whole, path);
  try {
    return Opened(whole, Database::Access::kRead);
  } catch (const NoAccess&) {
    // A killed update leaves the mark of a log in the file. Where nothing can be made beside it, as on
    // read-only media, the file says all if there is neither log nor journal.
    if (Exists(whole + "-wal") || Exists(whole + "-journal")) throw;
    return Opened(whole, Database::Access::kReadAsIs);
  }
}

UpdateLock::UpdateLock(const std::string& catalogue) {
  const std::string path = catalogue + ".lock";
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
  if (descriptor_ < 0) {
    ThrowFor(path, std::string("the lock of the catalogue cannot be made: ") + std::strerror(errno));
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
  if (Exists(whole) || if_missing == IfMissing::kFail) OpenCatalogue(path);
  CheckHasOneName(whole);
  lock_.emplace(whole);
  if (!Exists(whole)) MakeCatalogue(whole);
  database_.emplace(Opened(whole, Database::Access::kWrite));
  // The log beside the file needs memory that all its users share.
  if (IsOnThisMachine(whole)) database_->Run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  // Shows at once whether writing is allowed.
  Transaction transaction(*database_);
  CompleteSchema(*database_);
  transaction.Commit();
}

void UpdatedCatalogue::Finish() {
  is_finished_ = true;
  try {
    database_->Run("PRAGMA busy_timeout = 500; PRAGMA wal_checkpoint(TRUNCATE)");
    database_->Run("PRAGMA journal_mode = DELETE");
  } catch (const Busy&) {
    // Readers that are at work keep the log; the next update ends it then.
  }
}

UpdatedCatalogue::~UpdatedCatalogue() {
  try {
    if (!is_finished_) Finish();
  } catch (const std::exception&) {
    // All that was committed stays readable from the log.
  }
}

}  // namespace quillmark::tool
