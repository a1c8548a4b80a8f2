// quillmark catalogue verify: reads files again, also those whose stamps say that they did not change, and
// compares what they give with what the catalogue says.
#include <algorithm>
#include <atomic>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/face_rows.h"
#include "catalogue/file_rows.h"
#include "catalogue/own_files.h"
#include "files/interrupt.h"
#include "files/open_files.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr int kDifferencesFound = 3;
constexpr std::int64_t kFilesOfPart = 1024;

// Of this machine's roots: those of others cannot be read here. Chosen at the start, and looked up part by
// part: updates may have to wait for the end of a query.
constexpr const char kChoose[] = R"(
INSERT INTO temp.chosen (file)
SELECT id FROM (
  SELECT files.id, position, key, name
  FROM files JOIN folders ON folders.id = files.folder JOIN roots ON roots.id = folders.root
  WHERE label = '' ORDER BY CASE WHEN ?1 < 0 THEN 0 ELSE random() END LIMIT ?1)
ORDER BY position, key, name)";

constexpr const char kPart[] = R"(
SELECT place, files.id, folders.path, name, outcome, reason, listed, identity = 'file', key = x''
FROM temp.chosen JOIN files ON files.id = chosen.file JOIN folders ON folders.id = files.folder
JOIN roots ON roots.id = folders.root
WHERE place > ?1 ORDER BY place LIMIT ?2)";

struct KnownFile {
  std::int64_t id = 0;
  std::string path;
  bool is_sidecar = false;
  Explanation explanation;
};

// Some of the files, which are read at the same time.
class Part : public PathSource {
 public:
  explicit Part(const std::vector<KnownFile>& files) : files_(files) {}
  std::optional<FontPath> Next() override {
    if (next_ == files_.size() || stopped_ || Interrupted() != 0) return std::nullopt;
    const KnownFile& file = files_[next_++];
    return FontPath{file.path, false, {}, file.is_sidecar};
  }
  bool MayHaveNext() const override { return next_ < files_.size(); }
  void Stop() override { stopped_ = true; }

 private:
  const std::vector<KnownFile>& files_;
  std::size_t next_ = 0;
  std::atomic<bool> stopped_ = false;
};

bool IsSame(const IdentifiedFile& file, const KnownFile& known, FaceTable& faces) {
  const Explanation& found = file.explanation;
  if (found.outcome != known.explanation.outcome || found.reason != known.explanation.reason ||
      found.listed != known.explanation.listed) {
    return false;
  }
  const std::vector<FaceRow> rows = file.array ? RowsOf(file.faces, *file.array) : std::vector<FaceRow>();
  const std::vector<FaceRow> kept = faces.Read(known.id);
  return std::equal(rows.begin(), rows.end(), kept.begin(), kept.end(),
                    [](const FaceRow& a, const FaceRow& b) { return a.Equals(b); });
}

// So that the next update reads them, though nothing else shows that they changed. Not where nothing can be
// written.
bool MarkToBeRead(const std::string& catalogue, const std::vector<std::int64_t>& ids) {
  try {
    UpdatedCatalogue updated(catalogue, UpdatedCatalogue::IfMissing::kFail);
    Transaction transaction(updated.database());
    Statement mark(updated.database(), "UPDATE files SET uncertain = 1 WHERE id = ?");
    for (const std::int64_t id : ids) mark.Run(id);
    transaction.Commit();
    return true;
  } catch (const DatabaseError&) {
    return false;
  }
}

struct Findings {
  std::size_t read = 0;                 // files
  std::vector<std::int64_t> differing;  // rows of files
  bool is_complete = true;
};

class Verifier {
 public:
  Verifier(const CatalogueCheck& check, Database& database)
      : faces_(database),
        own_(database.path()),
        files_beside_(own_, [](const std::string&) { return false; }),
        jobs_(JobsThatCanOpenFiles(check.work.jobs)),
        progress_(ShowsProgress(check.work), [this] { return total_; }) {
    shared_.system = &files_beside_;
    database.Run(
        "PRAGMA query_only = OFF; CREATE TEMP TABLE chosen (place INTEGER PRIMARY KEY, file INTEGER)");
    Statement(database, kChoose).Run(check.sample.value_or(-1));
    database.Run("PRAGMA query_only = ON");
    total_ = static_cast<std::size_t>(database.Number("SELECT count(*) FROM temp.chosen").value_or(0));
    part_.emplace(database, kPart);
  }

  Findings Run() {
    for (std::vector<KnownFile> part = NextPart(); !part.empty(); part = NextPart()) Read(part);
    progress_.Clear();
    FlushOutput();
    return {progress_.done(), std::move(differing_), is_complete_};
  }

 private:
  std::vector<KnownFile> NextPart() {
    std::vector<KnownFile> part;
    if (Interrupted() != 0) return part;
    part_->With(last_place_, kFilesOfPart);
    while (part_->Step()) part.push_back(TakeKnown(*part_));
    part_->Reset();
    return part;
  }

  KnownFile TakeKnown(const Statement& row) {
    last_place_ = row.Integer(0);
    const std::string folder = row.Text(2);
    const std::string name = row.Text(3);
    KnownFile file{row.Integer(1), folder + name, false, {}};
    file.explanation.outcome = static_cast<Outcome>(row.Integer(4));
    file.explanation.reason = row.Text(5);
    if (!row.IsNull(6)) file.explanation.listed = static_cast<std::uint32_t>(row.Integer(6));
    // As a walk takes them: not a root that is a file, nor the files of a root that is such a folder.
    const bool is_root = row.Integer(7) != 0;
    const bool is_in_root = row.Integer(8) != 0;
    file.is_sidecar =
        !is_root && (name.starts_with("._") || (!is_in_root && folder.ends_with("/.AppleDouble/")));
    return file;
  }

  void Read(const std::vector<KnownFile>& part) {
    Part source(part);
    auto known = part.begin();  // files come back in their order
    IdentifyAll(
        source, jobs_, kRowNeeds,
        [&](const IdentifiedFile& file) {
          Compare(file, *known);
          ++known;  // not where memory ran out in comparing: then the file comes again
        },
        shared_);
  }

  void Compare(const IdentifiedFile& file, const KnownFile& known) {
    const bool is_unreadable = file.explanation.outcome == Outcome::kUnreadable;
    const bool is_same = IsSame(file, known, faces_);
    if (!is_same) differing_.push_back(known.id);
    if (is_unreadable) is_complete_ = false;
    if (!is_same || is_unreadable) progress_.Clear();
    if (is_unreadable) {
      std::cerr << LineOf(file) + '\n';
    } else if (!is_same) {
      std::cout << Printable(file.source.path) + '\n';
    }
    progress_.Advance();
  }

  FaceTable faces_;
  const OwnFiles own_;
  const OtherFiles files_beside_;
  const unsigned jobs_;
  std::optional<std::size_t> total_;
  Progress progress_;
  SharedReading shared_;
  std::optional<Statement> part_;
  std::int64_t last_place_ = 0;
  std::vector<std::int64_t> differing_;
  bool is_complete_ = true;
};

}  // namespace

int VerifyCatalogue(const CatalogueCheck& check) {
  NoteInterrupts();
  Findings found;
  {
    Database database = OpenCatalogue(check.catalogue);
    Statement tables(database, "SELECT 1 FROM meta WHERE name = 'tables' AND value = ?");
    if (!tables.With(std::string_view(check.tables)).Step()) {
      throw DatabaseError(Printable(check.catalogue) +
                          ": it was made with other knowledge tables; update it first");
    }
    tables.Reset();
    found = Verifier(check, database).Run();
  }
  if (Interrupted() != 0) std::cerr << "stopped after " + Counted(found.read, "file") + '\n';
  if (!found.differing.empty() && !MarkToBeRead(check.catalogue, found.differing)) {
    std::cerr << "the catalogue cannot be written, so that the next update does not know of these files\n";
  }
  if (!check.work.quiet) {
    std::cerr << Counted(found.read, "file") + " read again, " + Grouped(found.differing.size()) +
                     " with another result\n";
  }
  if (Interrupted() != 0) return InterruptedStatus();
  return !found.is_complete ? 1 : found.differing.empty() ? 0 : kDifferencesFound;
}

}  // namespace quillmark::tool
