// The file of a catalogue: how it is opened, locked for an update, made and left behind. Tests:
// tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_CATALOGUE_FILE_H_
#define QUILLMARK_TOOL_CATALOGUE_CATALOGUE_FILE_H_

#include <optional>
#include <string>

#include "catalogue/database.h"

namespace quillmark::tool {

// Opens a catalogue to look things up in it. Throws a DatabaseError when there is none; a file that is no
// catalogue is not changed.
Database OpenCatalogue(const std::string& path);

// Keeps other updates of the same catalogue out while it lives, by a file beside it that stays.
class UpdateLock {
 public:
  explicit UpdateLock(const std::string& catalogue);
  ~UpdateLock();
  UpdateLock(const UpdateLock&) = delete;
  UpdateLock& operator=(const UpdateLock&) = delete;

 private:
  int descriptor_;
};

// A catalogue that is being written. Where there is none, one without roots is made, if that is wanted.
class UpdatedCatalogue {
 public:
  enum class IfMissing { kFail, kMake };

  UpdatedCatalogue(const std::string& path, IfMissing if_missing);
  ~UpdatedCatalogue();
  UpdatedCatalogue(const UpdatedCatalogue&) = delete;
  UpdatedCatalogue& operator=(const UpdatedCatalogue&) = delete;

  Database& database() { return *database_; }
  // Leaves one file behind, without a log, unless readers are at work. Throws where that fails; what was
  // committed stays readable then. Without this call it is tried at the end.
  void Finish();

 private:
  std::optional<UpdateLock> lock_;
  std::optional<Database> database_;
  bool is_finished_ = false;
};

// Absolute, and through a link the path of the file itself, so that all links to it share one lock.
std::string CataloguePath(const std::string& path);

}  // namespace quillmark::tool

#endif
