// quillmark catalogue verify: reads files again, also those whose stamps say that they did not change, and
// compares what they give with what the catalogue says.
#include <algorithm>
#include <atomic>
#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/face_rows.h"
#include "catalogue/file_rows.h"
#include "files/interrupt.h"
#include "files/open_files.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr int kDifferencesFound = 3;
constexpr std::size_t kFilesOfPart = 1024;

// Of this machine's roots: those of others cannot be read here.
constexpr const char kFilesToRead[] = R"(
SELECT files.id, folders.path, name, outcome, reason
FROM files JOIN folders ON folders.id = files.folder JOIN roots ON roots.id = folders.root
WHERE files.id IN (SELECT files.id FROM files JOIN folders ON folders.id = files.folder
                   JOIN roots ON roots.id = folders.root WHERE label = ''
                   ORDER BY CASE WHEN ?1 < 0 THEN files.id ELSE random() END LIMIT ?1)
ORDER BY position, key, name)";

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
  if (found.outcome != known.explanation.outcome || found.reason != known.explanation.reason) return false;
  const std::vector<FaceRow> rows =
      file.array ? RowsOf(file.faces, *file.array, DetailsOf(file).variable) : std::vector<FaceRow>();
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

class Verifier {
 public:
  Verifier(const CatalogueCheck& check, Database& database)
      : check_(check),
        faces_(database),
        files_(database, kFilesToRead),
        jobs_(JobsThatCanOpenFiles(check.work.jobs)),
        progress_(ShowsProgress(check.work), [this] { return total_; }) {
    const std::int64_t all = database.Number("SELECT count(*) FROM files").value_or(0);
    total_ = static_cast<std::size_t>(std::min(all, check.sample.value_or(all)));
  }

  int Run() {
    files_.With(check_.sample.value_or(-1));
    std::vector<KnownFile> part;
    while (Interrupted() == 0 && files_.Step()) {
      part.push_back(KnownIn(files_));
      if (part.size() >= kFilesOfPart) Read(part);
    }
    Read(part);
    files_.Reset();
    progress_.Clear();
    FlushOutput();
    if (Interrupted() != 0) std::cerr << "stopped after " + Counted(progress_.done(), "file") + '\n';
    if (!differing_.empty() && !MarkToBeRead(check_.catalogue, differing_)) {
      std::cerr << "the catalogue cannot be written, so that the next update does not know of these files\n";
    }
    if (!check_.work.quiet) {
      std::cerr << Counted(progress_.done(), "file") + " read again, " + std::to_string(differing_.size()) +
                       " with another result\n";
    }
    if (Interrupted() != 0) return InterruptedStatus();
    return !is_complete_ ? 1 : differing_.empty() ? 0 : kDifferencesFound;
  }

 private:
  static KnownFile KnownIn(const Statement& row) {
    KnownFile file{row.Integer(0), row.Text(1) + row.Text(2), false, {}};
    file.explanation.outcome = static_cast<Outcome>(row.Integer(3));
    file.explanation.reason = row.Text(4);
    const std::string name = row.Text(2);
    file.is_sidecar = name.starts_with("._") || row.Text(1).ends_with("/.AppleDouble/");
    return file;
  }

  void Read(std::vector<KnownFile>& part) {
    std::map<std::string, const KnownFile*> by_path;
    for (const KnownFile& file : part) by_path.emplace(file.path, &file);
    Part source(part);
    IdentifyAll(
        source, jobs_, kEveryNeed,
        [&](const IdentifiedFile& file) { Compare(file, *by_path.at(file.source.path)); }, shared_);
    part.clear();
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

  const CatalogueCheck& check_;
  FaceTable faces_;
  Statement files_;
  const unsigned jobs_;
  std::optional<std::size_t> total_;
  Progress progress_;
  SharedReading shared_;
  std::vector<std::int64_t> differing_;
  bool is_complete_ = true;
};

}  // namespace

int VerifyCatalogue(const CatalogueCheck& check) {
  NoteInterrupts();
  Database database = OpenCatalogue(check.catalogue);
  return Verifier(check, database).Run();
}

}  // namespace quillmark::tool
