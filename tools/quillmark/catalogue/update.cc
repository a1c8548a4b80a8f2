#include "catalogue/update.h"

#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/derived.h"
#include "catalogue/file_clock.h"
#include "catalogue/file_rows.h"
#include "catalogue/own_files.h"
#include "catalogue/recording_files.h"
#include "catalogue/root_scan.h"
#include "files/interrupt.h"
#include "files/open_files.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

// Read at the same time as far as threads go; written in their order.
constexpr std::size_t kFilesOfBatch = 1024;
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
    if (++files_ >= kFilesOfCommit || Clock::now() - begun_ >= kTimeOfCommit) Commit();
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

// Files of one root that are read at the same time.
class Batch : public PathSource {
 public:
  void Add(FoundFile file) { files_.push_back({std::move(file), nullptr}); }
  std::size_t size() const { return files_.size(); }
  void Clear() {
    files_.clear();
    places_.clear();
    next_ = 0;
    stopped_ = false;
  }
  void Finish() {
    for (std::size_t i = 0; i < files_.size(); ++i) places_.emplace(files_[i].found.path(), i);
  }

  std::optional<FontPath> Next() override {
    if (next_ == files_.size() || stopped_ || Interrupted() != 0) return std::nullopt;
    const FoundFile& file = files_[next_++].found;
    return FontPath{file.path(), false, {}, file.is_sidecar, {}, file.possible_carriers};
  }
  bool MayHaveNext() const override { return next_ < files_.size(); }
  void Stop() override { stopped_ = true; }

  const FoundFile& Found(const std::string& path) const { return files_[places_.at(path)].found; }
  // Any thread; each file is read on one at a time.
  std::unique_ptr<const FileSystem> Record(const std::string& path, const FileSystem& files) {
    auto& recording = files_[places_.at(path)].recording;
    recording = std::make_unique<Recording>(path, files_[places_.at(path)].found.stamp);
    return std::make_unique<RecordingFiles>(files, *recording);
  }
  void NoteSize(const IdentifiedFile& file, const FileSystem& system) {
    files_[places_.at(file.source.path)].total_size = TotalSizeOf(file, system);
  }
  std::uint64_t TotalSize(const std::string& path) const { return files_[places_.at(path)].total_size; }
  bool Holds(const std::string& path) const { return places_.contains(path); }
  bool HasNoAttributes(const std::string& path) const {
    const auto& recording = files_[places_.at(path)].recording;
    return recording && recording->has_no_attributes();
  }
  Companions Asked(const std::string& path) {
    const auto& recording = files_[places_.at(path)].recording;
    return recording ? recording->Taken() : Companions();
  }

 private:
  struct File {
    FoundFile found;
    std::unique_ptr<Recording> recording;
    std::uint64_t total_size = 0;
  };
  std::vector<File> files_;
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t next_ = 0;
  std::atomic<bool> stopped_ = false;
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
        // Those of the batch were looked at when they were found.
        files_beside_(own_, [this](const std::string& path) { return batch_.Holds(path); }),
        clock_(database.path().empty() ? "" : database.path() + ".lock"),
        gone_(begun.gone) {}

  int Run() {
    for (const Root& root : roots_) {
      if (Interrupted() == 0) Walk(root);
    }
    commits_.Commit();
    if (Interrupted() == 0) EndRun();
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
    shared.then = [this](const IdentifiedFile& file) { batch_.NoteSize(file, files_beside_); };
    shared.wrap = [this](const FontPath& source, const FileSystem& files) {
      return batch_.Record(source.path, files);
    };
    std::string fault;
    RootScan::Events events;
    events.on_file = [this] { progress_.Advance(); };
    events.on_fault = [&](const std::string& path, const std::string& why) {
      Tell(Printable(path) + ": " + why);
      if (fault.empty()) fault = Printable(path) + ": " + why;
    };
    events.stopped = [] { return Interrupted() != 0; };
    database_.Run("CREATE TEMP TABLE gone_files (file INTEGER PRIMARY KEY)");
    {
      RootScan scan(database_, root, rules_, own_, clock_, events);
      while (auto file = scan.Next()) {
        batch_.Add(*std::move(file));
        if (batch_.size() >= kFilesOfBatch) Read(root, shared);
      }
      Read(root, shared);
      commits_.Begin();
      if (scan.is_whole()) RemoveGone(root);
      if (Interrupted() == 0) {
        Statement(database_, "UPDATE roots SET identity = coalesce(?, identity), fault = ? WHERE id = ?")
            .Run(scan.is_whole() ? std::optional<std::string_view>(scan.identity()) : std::nullopt,
                 fault.empty() ? std::nullopt : std::optional<std::string_view>(fault), root.id);
      }
      commits_.Commit();
    }
    database_.Run("DROP TABLE temp.gone_files");
    is_complete_ &= fault.empty();
  }

  void Read(const Root& root, SharedReading& shared) {
    batch_.Finish();
    const auto write = [&](const IdentifiedFile& file) {
      try {
        Write(root, file);
      } catch (const std::bad_alloc&) {
        // A file that was half written cannot be handed over again: the update ends with its last commit.
        throw DatabaseError(Printable(database_.path()) + ": there is too little memory to write it");
      }
    };
    IdentifyAll(batch_, jobs_, kRowNeeds, write, shared);
    batch_.Clear();
  }

  void Write(const Root& root, const IdentifiedFile& file) {
    commits_.Begin();
    const FoundFile& found = batch_.Found(file.source.path);
    const FileChange change =
        files_.Write(root.id, found, file, batch_.TotalSize(file.source.path),
                     batch_.HasNoAttributes(file.source.path), batch_.Asked(file.source.path));
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
  Batch batch_;
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
    if (::stat(path.c_str(), &found) == 0 || known.With(Blob{RootPath(path)}).Step()) continue;
    throw DatabaseError(Printable(path) + ": it cannot be walked: " + std::strerror(errno));
  }
}

}  // namespace

int UpdateDatabase(Database& database, const CatalogueUpdate& update, bool tells_counts) {
  if (update.roots.empty() && RootsOf(database).empty()) {
    throw DatabaseError(Printable(update.catalogue) + ": the catalogue has no roots; give their paths");
  }
  if (!database.path().empty()) CheckNewRoots(database, update.roots);
  const BegunRun begun = BeginRun(database, update.roots);
  const std::vector<Root> roots = RootsOf(database);
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
