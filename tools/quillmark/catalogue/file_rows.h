// DetailsOf: what `same` shows of a file besides its faces. FileTable: writes what became of a file into the
// catalogue: its stamps, its faces, or why it gave none.
#ifndef QUILLMARK_TOOL_CATALOGUE_FILE_ROWS_H_
#define QUILLMARK_TOOL_CATALOGUE_FILE_ROWS_H_

#include <cstdint>
#include <string>

#include "catalogue/database.h"
#include "catalogue/face_rows.h"
#include "catalogue/recording_files.h"
#include "catalogue/root_scan.h"
#include "files/collect.h"
#include "library/library_details.h"

namespace quillmark::tool {

// Opens the file once more, if it gave faces. For any thread.
FileDetails DetailsOf(const IdentifiedFile& file, const FileSystem& system);

enum class FileChange { kAdded, kChanged, kSame };

class FileTable {
 public:
  FileTable(Database& database, std::int64_t run);

  // `details` are those of a file with faces; `asked` is what the answer depended on besides the file and its
  // forks. kSame when the answer is as it was.
  FileChange Write(std::int64_t root, const FoundFile& found, const IdentifiedFile& file,
                   const FileDetails& details, Companions asked);
  // After rows of folders were removed.
  void ForgetFolder() { last_folder_ = 0; }

 private:
  std::int64_t FolderId(std::int64_t root, const FolderOfRoot& folder);
  bool IsSameAnswer(std::int64_t id, const Explanation& explanation, const std::vector<FaceRow>& rows);

  Database& database_;
  const std::int64_t run_;
  FaceTable faces_;
  Statement add_folder_, add_, change_, answer_, remove_companions_, add_companion_, forget_gone_;
  std::int64_t last_root_ = 0, last_folder_ = 0;  // 0 for none
  std::string last_key_;
};

}  // namespace quillmark::tool

#endif
