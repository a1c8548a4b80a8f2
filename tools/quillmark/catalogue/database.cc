#include "catalogue/database.h"

#include <sqlite3.h>

#include <cstring>
#include <new>
#include <utility>

#include "text/printable.h"

namespace quillmark::tool {
namespace {

// Readers wait so long for a commit, and a commit for readers where there is no log beside the file.
constexpr int kPatienceMilliseconds = 10'000;

// Bytes, of a row or a value: far more than any face has.
constexpr int kLongestValue = 16 << 20;

std::string WordsOf(int code, int system_error, const char* message) {
  switch (code & 0xFF) {
    case SQLITE_FULL:
      return "there is no room to write it";
    case SQLITE_NOTADB:
      return "not a catalogue";
    case SQLITE_CORRUPT:
      return "a damaged catalogue; make it anew";
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return "the catalogue cannot be written";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "another program is at work with the catalogue and does not end";
    case SQLITE_CANTOPEN:
      return std::string("the catalogue cannot be opened: ") +
             (system_error != 0 ? std::strerror(system_error) : message);
    case SQLITE_IOERR:
      return std::string("the catalogue cannot be read or written: ") +
             (system_error != 0 ? std::strerror(system_error) : message);
    case SQLITE_ERROR:
      return std::string("not a catalogue of the form it claims to be: ") + message;
    default:
      return std::string("the catalogue cannot be used: ") + message;
  }
}

// The path as SQLite takes it with a parameter behind it.
std::string AsUri(const std::string& path) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/-_.~";
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char each : path) {
    const auto byte = static_cast<unsigned char>(each);
    if (kPlain.find(each) != std::string_view::npos) {
      uri += each;
    } else {
      uri += {'%', kDigits[byte / 16], kDigits[byte % 16]};
    }
  }
  return uri;
}

int OpeningFlags(Database::Access access) {
  switch (access) {
    case Database::Access::kReadAsIs:
      return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    case Database::Access::kCreate:
      return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case Database::Access::kRead:
    case Database::Access::kWrite:
      break;
  }
  // Also for reading: a journal that a killed process left must be played back. Where that is not allowed,
  // SQLite opens for reading.
  return SQLITE_OPEN_READWRITE;
}

}  // namespace

void Database::Close::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

Database::Database(std::string path, Access access) : path_(std::move(path)) {
  const std::string name = access == Access::kReadAsIs ? AsUri(path_) + "?immutable=1" : path_;
  sqlite3* handle = nullptr;
  const int opened =
      sqlite3_open_v2(name.c_str(), &handle, OpeningFlags(access) | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  if (opened != SQLITE_OK) Fail(opened);
  sqlite3_busy_timeout(handle, kPatienceMilliseconds);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, access == Access::kCreate ? 1 : 0, nullptr);
  Run("PRAGMA foreign_keys = ON; PRAGMA cell_size_check = ON");
  if (access == Access::kRead || access == Access::kReadAsIs) Run("PRAGMA query_only = ON");
}

void Database::Fail(int code) const {
  if ((code & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
  const int system_error = handle_ ? sqlite3_system_errno(handle()) : 0;
  const char* const message = handle_ ? sqlite3_errmsg(handle()) : sqlite3_errstr(code);
  const std::string words = Printable(path_) + ": " + WordsOf(code, system_error, message);
  if ((code & 0xFF) == SQLITE_CANTOPEN || (code & 0xFF) == SQLITE_READONLY) throw NoAccess(words);
  if ((code & 0xFF) == SQLITE_BUSY || (code & 0xFF) == SQLITE_LOCKED) throw Busy(words);
  throw DatabaseError(words);
}

void Database::Run(const char* statements) {
  const int code = sqlite3_exec(handle(), statements, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Fail(code);
}

std::optional<std::int64_t> Database::Number(const char* query) {
  Statement statement(*this, query);
  if (!statement.Step()) return std::nullopt;
  return statement.Integer(0);
}

std::int64_t Database::last_id() const { return sqlite3_last_insert_rowid(handle()); }

std::string DatabaseHeader(const std::string& path) {
  const Database database(path, Database::Access::kReadAsIs);
  sqlite3_file* file = nullptr;
  std::string header(kDatabaseHeaderSize, '\0');
  const int found = sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (found != SQLITE_OK || file == nullptr || file->pMethods == nullptr) database.Fail(SQLITE_CANTOPEN);
  const int read = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
  if (read == SQLITE_IOERR_SHORT_READ) return {};
  if (read != SQLITE_OK) database.Fail(read);
  return header;
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(Database& database, const char* text) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v3(database.handle(), text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  statement_.reset(statement);
}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) database_.Fail(code);
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  database_.Fail(code);
}

void Statement::Reset() { sqlite3_reset(statement_.get()); }

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::Integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

std::string Statement::Text(int column) const {
  const void* const bytes = sqlite3_column_blob(statement_.get(), column);
  const int length = sqlite3_column_bytes(statement_.get(), column);
  return bytes == nullptr ? std::string()
                          : std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

void Statement::Bind(int place, std::int64_t value) {
  Check(sqlite3_bind_int64(statement_.get(), place, value));
}

void Statement::Bind(int place, std::nullptr_t) { Check(sqlite3_bind_null(statement_.get(), place)); }

// The copies that SQLite makes let values be temporary objects.
void Statement::Bind(int place, std::string_view text) {
  const char* const start = text.data() == nullptr ? "" : text.data();
  Check(sqlite3_bind_text64(statement_.get(), place, start, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::Bind(int place, Blob blob) {
  const char* const start = blob.bytes.data() == nullptr ? "" : blob.bytes.data();
  Check(sqlite3_bind_blob64(statement_.get(), place, start, blob.bytes.size(), SQLITE_TRANSIENT));
}

Transaction::Transaction(Database& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }

Transaction::~Transaction() {
  // Fails only where SQLite has rolled back by itself.
  if (is_open_) sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  database_.Run("COMMIT");
  is_open_ = false;
}

}  // namespace quillmark::tool
