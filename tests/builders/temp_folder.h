// A folder of its own for one test, removed with everything in it at the end, and files written into it.
#ifndef QUILLMARK_TESTS_BUILDERS_TEMP_FOLDER_H_
#define QUILLMARK_TESTS_BUILDERS_TEMP_FOLDER_H_

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillmark {

inline void WriteFile(const std::string& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}
// The whole file; empty when it cannot be read.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class TempFolder {
 public:
  TempFolder() : path_((std::filesystem::temp_directory_path() / "quillmark-test-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  // The path that `name` has in the folder.
  std::string Path(const std::string& name) const { return path_ + "/" + name; }
  // Writes a file (making its parent folders) and returns its path.
  std::string Write(const std::string& name, std::string_view bytes) const {
    const std::string path = Path(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    WriteFile(path, bytes);
    return path;
  }

 private:
  std::string path_;
};

}  // namespace quillmark

#endif
