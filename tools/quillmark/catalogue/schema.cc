#include "catalogue/schema.h"

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/database.h"
#include "platform/byte_reader.h"
#include "reasons/outcome.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr const char kSchema[] = R"(
CREATE TABLE meta (
  name  TEXT PRIMARY KEY,
  value TEXT NOT NULL
) WITHOUT ROWID;

CREATE TABLE runs (
  id         INTEGER PRIMARY KEY,
  started    INTEGER NOT NULL,
  ended      INTEGER,
  added      INTEGER NOT NULL DEFAULT 0,
  changed    INTEGER NOT NULL DEFAULT 0,
  gone       INTEGER NOT NULL DEFAULT 0,
  read       INTEGER NOT NULL DEFAULT 0,
  unreadable INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE roots (
  id       INTEGER PRIMARY KEY,
  label    TEXT NOT NULL DEFAULT '',
  path     BLOB NOT NULL,
  position INTEGER NOT NULL,
  identity TEXT,
  fault    TEXT,
  UNIQUE (label, path)
);

CREATE TABLE folders (
  id   INTEGER PRIMARY KEY,
  root INTEGER NOT NULL REFERENCES roots ON DELETE CASCADE,
  key  BLOB NOT NULL,
  path BLOB NOT NULL,
  UNIQUE (root, key)
);

CREATE TABLE files (
  id           INTEGER PRIMARY KEY,
  folder       INTEGER NOT NULL REFERENCES folders ON DELETE CASCADE,
  name         BLOB NOT NULL,
  kind         INTEGER NOT NULL,
  size         INTEGER NOT NULL,
  mtime        INTEGER NOT NULL,
  ctime        INTEGER NOT NULL,
  inode        INTEGER NOT NULL,
  attributes   INTEGER NOT NULL,
  companions   INTEGER NOT NULL,
  uncertain    INTEGER NOT NULL,
  whole_folder INTEGER NOT NULL,
  rules        INTEGER NOT NULL,
  outcome      INTEGER NOT NULL,
  reason       TEXT,
  listed       INTEGER,
  total_size   INTEGER NOT NULL,
  added        INTEGER NOT NULL,
  changed      INTEGER NOT NULL,
  UNIQUE (folder, name)
);

CREATE TABLE companions (
  file       INTEGER NOT NULL REFERENCES files ON DELETE CASCADE,
  path       BLOB NOT NULL,
  kind       INTEGER NOT NULL,
  size       INTEGER NOT NULL,
  mtime      INTEGER NOT NULL,
  ctime      INTEGER NOT NULL,
  inode      INTEGER NOT NULL,
  attributes INTEGER NOT NULL,
  PRIMARY KEY (file, path)
) WITHOUT ROWID;

CREATE TABLE makers (
  id   INTEGER PRIMARY KEY,
  text TEXT NOT NULL UNIQUE
);

CREATE TABLE faces (
  file                INTEGER NOT NULL REFERENCES files ON DELETE CASCADE,
  face                INTEGER NOT NULL,
  post_script_name    TEXT NOT NULL,
  family              TEXT NOT NULL,
  full_name           TEXT NOT NULL,
  display_name        TEXT,
  windows_full_name   TEXT,
  kind                TEXT NOT NULL,
  version             TEXT NOT NULL,
  platform            TEXT NOT NULL,
  foundry             TEXT NOT NULL,
  class               TEXT NOT NULL,
  styles              TEXT,
  checksum            INTEGER NOT NULL,
  legacy_checksum     INTEGER NOT NULL,
  kerning_checksum    INTEGER NOT NULL,
  outline_file_size   INTEGER NOT NULL,
  printer_font        BLOB,
  printer_font_exists INTEGER,
  fond_id             INTEGER,
  style               INTEGER NOT NULL,
  maker               INTEGER NOT NULL REFERENCES makers,
  file_creator        INTEGER NOT NULL,
  outline_creator     INTEGER NOT NULL,
  loose_name          INTEGER,
  is_variable         INTEGER NOT NULL,
  PRIMARY KEY (file, face)
) WITHOUT ROWID;

CREATE TABLE gone (
  run  INTEGER NOT NULL REFERENCES runs,
  root BLOB NOT NULL,
  path BLOB NOT NULL
);

CREATE INDEX files_changed ON files (changed);
CREATE INDEX files_unreadable ON files (outcome) WHERE outcome = 9;
CREATE INDEX gone_by_run ON gone (run);
CREATE INDEX gone_by_path ON gone (path);
CREATE INDEX faces_by_post_script_name ON faces (post_script_name COLLATE NOCASE);
CREATE INDEX faces_by_full_name ON faces (full_name COLLATE NOCASE);
CREATE INDEX faces_by_windows_full_name ON faces (windows_full_name COLLATE NOCASE) WHERE windows_full_name IS NOT NULL;
CREATE INDEX faces_by_loose_name ON faces (loose_name) WHERE loose_name IS NOT NULL;
CREATE INDEX faces_by_family ON faces (family COLLATE NOCASE);

CREATE VIEW fonts AS
  SELECT CAST(folders.path || files.name AS TEXT) AS path, face, post_script_name, family, full_name,
         coalesce(display_name, post_script_name) AS display_name,
         coalesce(windows_full_name, full_name) AS windows_full_name, foundry, class, styles, faces.kind AS kind,
         version, platform, printf('%08X', checksum) AS checksum, label
  FROM faces JOIN files ON files.id = faces.file JOIN folders ON folders.id = files.folder
  JOIN roots ON roots.id = folders.root;

CREATE VIEW files_without_faces AS
  SELECT CAST(folders.path || files.name AS TEXT) AS path, reason
  FROM files JOIN folders ON folders.id = files.folder
  WHERE NOT EXISTS (SELECT 1 FROM faces WHERE faces.file = files.id);

CREATE VIEW ambiguous_names AS
  SELECT post_script_name, count(DISTINCT checksum) AS data, count(*) AS faces
  FROM faces WHERE post_script_name <> '' GROUP BY post_script_name HAVING count(DISTINCT checksum) > 1;
)";

// Readers do without it.
constexpr const char kMounts[] = R"(
CREATE TABLE IF NOT EXISTS mounts (
  root INTEGER NOT NULL REFERENCES roots ON DELETE CASCADE,
  key  BLOB NOT NULL,
  PRIMARY KEY (root, key)
) WITHOUT ROWID;
)";

static_assert(static_cast<int>(Outcome::kUnreadable) == 9, "as in the index files_unreadable");

}  // namespace

void CreateSchema(Database& database) {
  Transaction transaction(database);
  database.Run(kSchema);
  database.Run(kMounts);
  database.Run(("PRAGMA application_id = " + std::to_string(kApplicationId) +
                "; PRAGMA user_version = " + std::to_string(kSchemaVersion))
                   .c_str());
  transaction.Commit();
}

void CompleteSchema(Database& database) { database.Run(kMounts); }

namespace {

// The header of a database file.
constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kVersionAt = 60;
constexpr std::size_t kApplicationAt = 68;

// 0 of what is no database.
std::int64_t NumberIn(const std::string& header, std::size_t at) {
  return header.starts_with(kMagic) ? std::int64_t{U32At(AsBytes(header), at).value_or(0)} : 0;
}

void CheckNumbers(const std::string& path, std::int64_t application, std::int64_t version) {
  const auto refuse = [&](const char* why) { throw DatabaseError(Printable(path) + ": " + why); };
  if (application != kApplicationId || version < 1) refuse("not a catalogue");
  if (version > kSchemaVersion) refuse("a catalogue of a newer version of Quillmark");
  if (version < kSchemaVersion) refuse("a catalogue of an older version of Quillmark; make it anew");
}

}  // namespace

void CheckSchema(Database& database) {
  CheckNumbers(database.path(), database.Number("PRAGMA application_id").value_or(0),
               database.Number("PRAGMA user_version").value_or(0));
}

void CheckHeader(const std::string& path, const std::string& header) {
  CheckNumbers(path, NumberIn(header, kApplicationAt), NumberIn(header, kVersionAt));
}

bool MayBeCatalogue(const std::string& header) {
  const std::int64_t application = NumberIn(header, kApplicationAt);
  return header.starts_with(kMagic) && (application == 0 || application == kApplicationId);
}

}  // namespace quillmark::tool
