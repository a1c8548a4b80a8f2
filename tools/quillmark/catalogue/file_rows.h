// FileTable: writes what became of a file into the catalogue: its stamps, its faces, or why it gave none.
#ifndef QUILLMARK_TOOL_CATALOGUE_FILE_ROWS_H_
#define QUILLMARK_TOOL_CATALOGUE_FILE_ROWS_H_

#include <cstdint>
#include <string>

#include "catalogue/database.h"
#include "catalogue/face_rows.h"
#include "catalogue/recording_files.h"
#include "catalogue/root_scan.h"
#include "files/collect.h"

namespace quillmark::tool {

// Bytes in both forks; 0 of a file without faces. Looks it up where its faces do not tell it. For any thread.
std::uint64_t TotalSizeOf(const IdentifiedFile& file, const FileSystem& system);

enum class FileChange { kAdded, kChanged, kSame };

class FileTable {
 public:
  FileTable(Database& database, std::int64_t run, StampRules rules);

  // `total_size` is that of TotalSizeOf; `recording` is of the questions that were asked for the answer, null
  // where none were. kSame when the answer is as it was.
  FileChange Write(std::int64_t root, const FoundFile& found, const IdentifiedFile& file,
                   std::uint64_t total_size, Recording* recording);
  // After rows of folders were removed.
  void ForgetFolder() { last_folder_ = 0; }

 private:
  bool MayHideChange(const std::string& path, const Stamp& before) const;
  std::int64_t FolderId(std::int64_t root, const FolderOfRoot& folder);
  bool IsSameAnswer(std::int64_t id, const Explanation& explanation, const std::vector<FaceRow>& rows);

  Database& database_;
  const std::int64_t run_;
  const StampRules rules_;
  FaceTable faces_;
  Statement add_folder_, add_, change_, answer_, remove_companions_, add_companion_, forget_gone_;
  std::int64_t last_root_ = 0, last_folder_ = 0;  // 0 for none
  std::string last_key_;
};

}  // namespace quillmark::tool

#endif
