// A file of the process that a fuzz target fills with each input, removed at the end.
#ifndef QUILLMARK_FUZZ_SCRATCH_FILE_H_
#define QUILLMARK_FUZZ_SCRATCH_FILE_H_

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace quillmark {

class ScratchFile {
 public:
  explicit ScratchFile(const std::string& extension)
      : path_((std::filesystem::temp_directory_path() /
               ("quillmark-fuzz-" + std::to_string(::getpid()) + "." + extension))
                  .string()) {}
  ~ScratchFile() { Remove(); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& path() const { return path_; }
  void Fill(const std::uint8_t* data, std::size_t size) const {
    Remove();  // writing over a file is slow
    std::FILE* file = std::fopen(path_.c_str(), "wb");
    if (file == nullptr) std::abort();
    const bool written = size == 0 || std::fwrite(data, 1, size, file) == size;  // empty data may be null
    if (std::fclose(file) != 0 || !written) std::abort();
  }

 private:
  void Remove() const {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  std::string path_;
};

}  // namespace quillmark

#endif
