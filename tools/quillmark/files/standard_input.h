// Standard input where a file is expected: one font, or one text. Tests: tests/cli/input_test.py.
#ifndef QUILLMARK_TOOL_FILES_STANDARD_INPUT_H_
#define QUILLMARK_TOOL_FILES_STANDARD_INPUT_H_

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace quillmark::tool {

// The path that stands for standard input, and its name in messages.
inline constexpr const char* kStandardInputPath = "-";
inline constexpr const char* kStandardInputName = "standard input";

// What is read at once.
inline constexpr std::size_t kBytesAtATime = std::size_t{64} * 1024;

// Waits for bytes, as long as `stopped` does not end that, and reads some. Returns how many: 0 at the end and
// when it was stopped; -1, with errno set, when they cannot be read.
ssize_t ReadWhenReady(int descriptor, std::span<std::uint8_t> block, const std::function<bool()>& stopped);

// Reads all of standard input. Returns why that failed; empty on success.
std::string ReadStandardInput(std::string& text);

// All of standard input as a file with a path, which the library needs. The bytes stay in memory. The path
// leads through a private folder, which exists only as long as this object.
class StandardInputFile {
 public:
  // `name` is what the file is called, extension included; when it is empty the first bytes choose the
  // extension.
  explicit StandardInputFile(const std::string& name);
  ~StandardInputFile();
  StandardInputFile(const StandardInputFile&) = delete;
  StandardInputFile& operator=(const StandardInputFile&) = delete;

  const std::string& path() const { return path_; }
  // Why there is no such file; empty when there is one.
  const std::string& fault() const { return fault_; }

 private:
  bool Fill();
  void GiveName(const std::string& name);

  std::string path_, fault_;
  std::string start_;  // the first bytes
  int contents_ = -1;  // in memory
  std::string folder_;
  int folder_descriptor_ = -1;
  std::string name_;  // in the folder; empty while nothing is there
};

}  // namespace quillmark::tool

#endif
