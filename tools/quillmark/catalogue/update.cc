#include "catalogue/update.h"

#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <deque>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>
#include <utility>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/derived.h"
#include "catalogue/file_clock.h"
#include "catalogue/file_rows.h"
#include "catalogue/own_files.h"
#include "catalogue/prune.h"
#include "catalogue/recording_files.h"
#include "catalogue/root_scan.h"
#include "files/interrupt.h"
#include "files/open_files.h"
#include "reasons/reason.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

// Found at once, so that threads seldom wait for the database.
constexpr std::size_t kFilesAhead = 256;
constexpr std::chrono::milliseconds kTimeOfSearch(50);
constexpr std::size_t kFilesOfCommit = 5000;
constexpr std::chrono::seconds kTimeOfCommit(2);

std::int64_t SecondsNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// Links are none.
bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() == fs::file_type::directory;
}

// Absolute, without needless parts. Links stay, and so does a ".." behind one, which is not the folder that
// the link lies in.
std::string RootPath(const std::string& path) {
  fs::path whole;
  for (const fs::path& part : fs::absolute(path)) {
    if (part.empty() || part == ".") continue;
    if (part == ".." && whole.has_relative_path() && whole.filename() != ".." && IsFolder(whole)) {
      whole = whole.parent_path();
    } else if (part != ".." || whole.has_relative_path()) {
      whole /= part;
    }
  }
  return whole.native();
}

// A transaction that is committed now and then.
class Commits {
 public:
  explicit Commits(Database& database) : database_(database) {}

  // Before something is written.
  void Begin() {
    if (transaction_) return;
    transaction_ = std::make_unique<Transaction>(database_);
    begun_ = Clock::now();
    files_ = 0;
  }
  void FileWritten() {
    if (++files_ >= kFilesOfCommit) return Commit();
    CommitWhenDue();
  }
  void CommitWhenDue() {
    if (transaction_ && Clock::now() - begun_ >= kTimeOfCommit) Commit();
  }
  void Commit() {
    if (!transaction_) return;
    transaction_->Commit();
    transaction_.reset();
  }

 private:
  using Clock = std::chrono::steady_clock;

  Database& database_;
  std::unique_ptr<Transaction> transaction_;
  Clock::time_point begun_;
  std::size_t files_ = 0;
};

// The files of a scan that must be read, while they are: found as threads ask for them, until they are
// written. `database_use` is held while the scan works.
class FilesUnderWay : public PathSource {
 public:
  struct File {
    FoundFile found;
    std::unique_ptr<Recording> recording = nullptr;
    std::uint64_t total_size = 0;
  };

  explicit FilesUnderWay(std::mutex& database_use) : database_use_(database_use) {}
  // `scan` outlives the reading of its files.
  void Begin(RootScan& scan) { scan_ = &scan; }

  std::optional<FontPath> Next() override {
    if (stopped_ || Interrupted() != 0) return std::nullopt;
    if (found_.empty()) FindSome();
    if (found_.empty()) return std::nullopt;
    FoundFile file = std::move(found_.front());
    found_.pop_front();
    FontPath path{file.path(), false, {}, file.is_sidecar, {}, file.possible_carriers};
    const std::lock_guard lock(mutex_);
    files_.insert_or_assign(path.path, File{std::move(file)});
    return path;
  }
  bool MayHaveNext() const override { return scan_ != nullptr || !found_.empty(); }
  void Stop() override { stopped_ = true; }

  bool Holds(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return files_.contains(path);
  }
  // For the thread that reads the file, or writes it; valid until Remove.
  File& At(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return files_.at(path);
  }
  void Remove(const std::string& path) {
    const std::lock_guard lock(mutex_);
    files_.erase(path);
  }

 private:
  // As many as are soon found, at least one.
  void FindSome() {
    const auto begin = std::chrono::steady_clock::now();
    while (scan_ != nullptr && found_.size() < kFilesAhead) {
      if (!found_.empty() && std::chrono::steady_clock::now() - begin > kTimeOfSearch) return;
      const std::lock_guard lock(database_use_);
      if (auto file = scan_->TakeFound()) {
        found_.push_back(*std::move(file));
      } else if (!scan_->Advance()) {
        scan_ = nullptr;
      }
    }
  }

  std::mutex& database_use_;
  RootScan* scan_ = nullptr;  // null behind its last file
  std::deque<FoundFile> found_;
  std::atomic<bool> stopped_ = false;
  mutable std::mutex mutex_;
  std::unordered_map<std::string, File> files_;  // by path
};

struct BegunRun {
  std::int64_t id = 0;
  std::size_t gone = 0;  // files of roots that were left out
};

class Updater {
 public:
  Updater(const CatalogueUpdate& update, Database& database, Progress& progress, std::vector<Root> roots,
          const BegunRun& begun)
      : database_(database),
        progress_(progress),
        roots_(std::move(roots)),
        commits_(database),
        run_(begun.id),
        rules_{update.ignore_ctime, update.ignore_inode},
        files_(database, run_, rules_),
        jobs_(JobsThatCanOpenFiles(update.work.jobs)),
        own_(database.path()),
        // The scan has looked at those under way.
        files_beside_(own_, [this](const std::string& path) { return under_way_.Holds(path); }),
        clock_(database.path().empty() ? "" : database.path() + ".lock"),
        gone_(begun.gone) {}

  int Run() {
    for (const Root& root : roots_) {
      if (Interrupted() == 0) Walk(root);
    }
    commits_.Commit();
    if (Interrupted() == 0) {
      EndRun();
      Prune(database_, changed_ + gone_ > 0);
    }
    return Interrupted() != 0 ? InterruptedStatus() : is_complete_ ? 0 : 1;
  }

  std::string Summary() const {
    return "; " + Counted(added_, "file") + " added, " + Grouped(changed_) + " changed, " + Grouped(gone_) +
           " gone, " + Grouped(read_) + " read";
  }

 private:
  void EndRun() {
    Statement(
        database_,
        "UPDATE runs SET ended = ?, added = ?, changed = ?, gone = ?, read = ?, unreadable = ? WHERE id = ?")
        .Run(SecondsNow(), std::int64_t(added_), std::int64_t(changed_), std::int64_t(gone_),
             std::int64_t(read_), std::int64_t(unreadable_), run_);
  }

  void Walk(const Root& root) {
    SharedReading shared;
    shared.system = &files_beside_;
    shared.wrap = [this](const FontPath& source, const FileSystem& files) {
      FilesUnderWay::File& file = under_way_.At(source.path);
      file.recording = std::make_unique<Recording>(source.path, file.found.stamp);
      return std::make_unique<RecordingFiles>(files, *file.recording);
    };
    shared.then = [this](const IdentifiedFile& file) {
      under_way_.At(file.source.path).total_size = TotalSizeOf(file, files_beside_);
    };
    const auto write = [&](const IdentifiedFile& file) {
      const std::lock_guard lock(database_use_);
      try {
        Write(root, file);
      } catch (const std::bad_alloc&) {
        // A file that was half written cannot be handed over again: the update ends with its last commit.
        throw DatabaseError(Printable(database_.path()) + ": there is too little memory to write it");
      }
    };
    std::string fault;
    RootScan::Events events;
    events.on_passed_over = [this] {
      progress_.Advance();
      commits_.CommitWhenDue();
    };
    events.on_fault = [&](const std::string& path, const std::string& why) {
      Tell(Printable(path) + ": " + why);
      if (fault.empty()) fault = Printable(path) + ": " + why;
    };
    events.stopped = [] { return Interrupted() != 0; };
    database_.Run("CREATE TEMP TABLE gone_files (file INTEGER PRIMARY KEY)");
    {
      RootScan scan(database_, root, rules_, own_, clock_, events);
      under_way_.Begin(scan);
      IdentifyAll(under_way_, jobs_, kRowNeeds, write, shared);
      const bool is_whole = !under_way_.MayHaveNext() && scan.is_whole();
      commits_.Begin();
      if (is_whole) RemoveGone(root);
      if (Interrupted() == 0) {
        Statement(database_, "UPDATE roots SET identity = coalesce(?, identity), fault = ? WHERE id = ?")
            .Run(is_whole ? std::optional<std::string_view>(scan.identity()) : std::nullopt,
                 fault.empty() ? std::nullopt : std::optional<std::string_view>(fault), root.id);
      }
      commits_.Commit();
      if (scan.is_file()) TellLack(root);
    }
    database_.Run("DROP TABLE temp.gone_files");
    is_complete_ &= fault.empty();
  }

  // Of a root that is a file, whether it was read or not. One that could not be read was told of.
  void TellLack(const Root& root) {
    Statement find(database_,
                   "SELECT outcome, reason, listed, (SELECT count(*) FROM faces WHERE file = files.id) FROM "
                   "folders JOIN files ON files.folder = folders.id WHERE root = ?");
    if (!find.With(root.id).Step()) return;
    const auto outcome = static_cast<Outcome>(find.Integer(0));
    if (outcome == Outcome::kFaces || outcome == Outcome::kUnreadable) return;
    Explanation explanation{outcome, find.Text(1)};
    if (!find.IsNull(2)) explanation.listed = static_cast<std::uint32_t>(find.Integer(2));
    Tell(Printable(root.path) + ": " + Told(static_cast<std::size_t>(find.Integer(3)), explanation));
    is_complete_ = false;
  }

  void Write(const Root& root, const IdentifiedFile& file) {
    commits_.Begin();
    const FilesUnderWay::File& read = under_way_.At(file.source.path);
    const FileChange change = files_.Write(root.id, read.found, file, read.total_size, read.recording.get());
    if (!read.found.was_passed_over) progress_.Advance();
    under_way_.Remove(file.source.path);
    ++read_;
    if (change == FileChange::kAdded) ++added_;
    if (change == FileChange::kChanged) ++changed_;
    if (file.explanation.outcome == Outcome::kUnreadable) {
      ++unreadable_;
      is_complete_ = false;
      Tell(LineOf(file));
    }
    commits_.FileWritten();
  }

  void RemoveGone(const Root& root) {
    Statement(database_,
              "INSERT INTO gone (run, root, path) SELECT ?, ?, CAST(folders.path || files.name AS BLOB) "
              "FROM temp.gone_files JOIN files ON files.id = gone_files.file JOIN folders ON folders.id = "
              "files.folder")
        .Run(run_, Blob{root.path});
    Statement(database_, "DELETE FROM files WHERE id IN (SELECT file FROM temp.gone_files)").Run();
    const auto removed = database_.Number("SELECT count(*) FROM temp.gone_files").value_or(0);
    if (removed == 0) return;
    gone_ += static_cast<std::size_t>(removed);
    database_.Run(
        "DELETE FROM folders WHERE NOT EXISTS (SELECT 1 FROM files WHERE files.folder = folders.id)");
    files_.ForgetFolder();
  }

  void Tell(const std::string& line) {
    progress_.Clear();
    std::cerr << line + '\n';
  }

  Database& database_;
  Progress& progress_;
  const std::vector<Root> roots_;
  Commits commits_;
  const std::int64_t run_;
  const StampRules rules_;
  FileTable files_;
  const unsigned jobs_;
  std::mutex database_use_;  // held by the thread that works with database_ while files are read
  FilesUnderWay under_way_{database_use_};
  const OwnFiles own_;
  const OtherFiles files_beside_;
  const FileClock clock_;
  std::size_t gone_;
  std::size_t added_ = 0, changed_ = 0, read_ = 0, unreadable_ = 0;
  bool is_complete_ = true;
};

// Makes the given roots those of the catalogue, in their order. Files of roots that are left out are gone;
// returns how many.
std::size_t ReplaceRoots(Database& database, std::int64_t run, const std::vector<std::string>& paths) {
  database.Run("UPDATE roots SET position = -1 WHERE label = ''");
  Statement add(database,
                "INSERT INTO roots (path, position) VALUES (?, ?) "
                "ON CONFLICT DO UPDATE SET position = excluded.position WHERE position < 0");
  std::int64_t position = 0;
  for (const std::string& path : paths) add.Run(Blob{RootPath(path)}, position++);
  Statement(
      database,
      "INSERT INTO gone (run, root, path) SELECT ?, roots.path, CAST(folders.path || files.name AS BLOB) "
      "FROM roots JOIN folders ON folders.root = roots.id JOIN files ON files.folder = folders.id "
      "WHERE label = '' AND position < 0")
      .Run(run);
  const std::int64_t gone = database.Number("SELECT changes()").value_or(0);
  database.Run("DELETE FROM roots WHERE label = '' AND position < 0");
  return static_cast<std::size_t>(gone);
}

// Roots stay as they are where none are given.
BegunRun BeginRun(Database& database, const std::vector<std::string>& roots) {
  Transaction transaction(database);
  Statement(database, "INSERT INTO runs (started) VALUES (?)").Run(SecondsNow());
  BegunRun begun{database.last_id()};
  if (!roots.empty()) begun.gone = ReplaceRoots(database, begun.id, roots);
  transaction.Commit();
  return begun;
}

std::vector<Root> RootsOf(Database& database) {
  std::vector<Root> roots;
  Statement found(database, "SELECT id, path, identity FROM roots WHERE label = '' ORDER BY position");
  while (found.Step()) roots.push_back({found.Integer(0), found.Text(1), found.Text(2)});
  return roots;
}

// A mistyped path must not take the place of the roots.
void CheckNewRoots(Database& database, const std::vector<std::string>& paths) {
  Statement known(database, "SELECT 1 FROM roots WHERE label = '' AND path = ?");
  for (const std::string& path : paths) {
    struct stat found {};
    const int error = ::stat(path.c_str(), &found) == 0 ? 0 : errno;
    if (error == 0 || known.With(Blob{RootPath(path)}).Step()) continue;
    throw DatabaseError(Printable(path) + ": it cannot be walked: " + std::strerror(error));
  }
}

}  // namespace

int UpdateDatabase(Database& database, const CatalogueUpdate& update, bool tells_counts) {
  if (update.roots.empty() && RootsOf(database).empty()) {
    throw DatabaseError(Printable(update.catalogue) + ": the catalogue has no roots; give their paths");
  }
  if (!database.path().empty()) CheckNewRoots(database, update.roots);
  const BegunRun begun = BeginRun(database, update.roots);
  std::vector<Root> roots = RootsOf(database);
  for (Root& root : roots) root.accepts_unmounted = update.accept_unmounted;
  DeriveAnewFor(database, update.tables);
  PathSources sources;
  for (const Root& root : roots) sources.paths.push_back(root.path);
  const PathCount count(sources, ShowsProgress(update.work));
  Progress progress(ShowsProgress(update.work), [&] { return count.total(); });
  Updater updater(update, database, progress, roots, begun);
  const int status = updater.Run();
  progress.Clear();
  if (Interrupted() != 0) {
    std::cerr << "stopped after " + Counted(progress.done(), "file") +
                     (tells_counts ? "; the next update goes on from there\n" : "\n");
  }
  if (tells_counts) {
    const auto number = [&](const char* query) {
      return static_cast<std::size_t>(database.Number(query).value_or(0));
    };
    std::cerr << FacesInFiles(number("SELECT count(*) FROM faces"), number("SELECT count(*) FROM files")) +
                     updater.Summary() + '\n';
  }
  return status;
}

int UpdateCatalogue(const CatalogueUpdate& update) {
  NoteInterrupts();
  UpdatedCatalogue catalogue(update.catalogue, update.roots.empty() ? UpdatedCatalogue::IfMissing::kFail
                                                                    : UpdatedCatalogue::IfMissing::kMake);
  const int status = UpdateDatabase(catalogue.database(), update, !update.work.quiet);
  catalogue.Finish();
  return status;
}

}  // namespace quillmark::tool
