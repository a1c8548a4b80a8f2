// Database: one SQLite file; Statement: a prepared statement with its values and rows; Transaction. Every
// error is a DatabaseError that names the file; too little memory is std::bad_alloc. For one thread at a
// time. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_DATABASE_H_
#define QUILLMARK_TOOL_CATALOGUE_DATABASE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace quillmark::tool {

class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Others are at work with the file, and did not end in time.
class Busy : public DatabaseError {
 public:
  using DatabaseError::DatabaseError;
};

// The file, or what must be made beside it, cannot be opened or written.
class NoAccess : public DatabaseError {
 public:
  using DatabaseError::DatabaseError;
};

class Database {
 public:
  enum class Access {
    kReadAsIs,  // looks at the file alone and touches nothing, as if nobody could write it
    kRead,      // never changes what it says; completes or undoes what a killed process left half written
    kWrite,
    kCreate,
  };

  // `path` is absolute. What the file holds is not trusted: no view and no trigger of it ever runs.
  Database(std::string path, Access access);

  const std::string& path() const { return path_; }
  // Runs statements that take no values and give no rows.
  void Run(const char* statements);
  // The first value of the first row; nothing without a row.
  std::optional<std::int64_t> Number(const char* query);
  std::int64_t last_id() const;
  // Throws the error that SQLite reported for this file.
  [[noreturn]] void Fail(int code) const;

  sqlite3* handle() const { return handle_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* handle) const;
  };
  const std::string path_;
  std::unique_ptr<sqlite3, Close> handle_;
};

// The first bytes of a database file, read without a lock and without a look at anything else: any other
// program may be at work with it. Empty for a file that is shorter. SQLite reads them, as nothing else may
// open a file on which it has locks. `path` is absolute and leads to a regular file.
std::string DatabaseHeader(const std::string& path);
inline constexpr std::size_t kDatabaseHeaderSize = 100;

// Bytes that are no text, such as paths.
struct Blob {
  std::string_view bytes;
};

// Must not outlive its database.
class Statement {
 public:
  Statement(Database& database, const char* text);

  // Starts over with these values.
  template <typename... Values>
  Statement& With(const Values&... values) {
    Reset();
    int place = 0;
    (Bind(++place, values), ...);
    return *this;
  }
  // True when there is a row to look at.
  bool Step();
  // For statements without rows.
  template <typename... Values>
  void Run(const Values&... values) {
    With(values...);
    while (Step()) {
    }
    Reset();
  }
  void Reset();

  bool IsNull(int column) const;
  std::int64_t Integer(int column) const;  // 0 for null
  std::string Text(int column) const;      // text or bytes; empty for null

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  void Bind(int place, std::int64_t value);
  void Bind(int place, std::nullptr_t);
  void Bind(int place, std::string_view text);
  void Bind(int place, Blob blob);
  template <typename Value>
  void Bind(int place, const std::optional<Value>& value) {
    if (value) {
      Bind(place, *value);
    } else {
      Bind(place, nullptr);
    }
  }
  void Check(int code) const;

  Database& database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// Takes back what was written in it unless it was committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Database& database_;
  bool is_open_ = true;
};

}  // namespace quillmark::tool

#endif
