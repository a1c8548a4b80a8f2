// A folder of its own for one test, removed with everything in it at the end, and files written into it.
#ifndef QUILLMARK_TESTS_BUILDERS_TEMP_FOLDER_H_
#define QUILLMARK_TESTS_BUILDERS_TEMP_FOLDER_H_

#include <string>
#include <string_view>

namespace quillmark {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  // Writes a file (making its parent folders) and returns its path.
  std::string Write(const std::string& name, std::string_view bytes) const;
  // The path that `name` has in the folder.
  std::string Path(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// The whole file; empty when it cannot be read.
std::string ReadFile(const std::string& path);

}  // namespace quillmark

#endif
