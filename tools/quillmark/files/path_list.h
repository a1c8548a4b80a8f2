// PathList: paths, or names of fonts, from a file or from standard input, one on each line or separated by
// NUL, read on request.
#ifndef QUILLMARK_TOOL_FILES_PATH_LIST_H_
#define QUILLMARK_TOOL_FILES_PATH_LIST_H_

#include <functional>
#include <optional>
#include <string>

namespace quillmark::tool {

class PathList {
 public:
  // `file` is a path, or "-" for standard input. Reading gives up when `stopped` says so, also while the
  // other end of a pipe is silent. `item` is what messages call one of the list.
  PathList(std::string file, char separator, std::function<bool()> stopped, std::string item = "path");
  ~PathList();
  PathList(const PathList&) = delete;
  PathList& operator=(const PathList&) = delete;

  // The next item that is not empty; nothing at the end, or when `fault` says why no more can be read.
  std::optional<std::string> Next();
  const std::string& fault() const { return fault_; }

  // For messages.
  std::string name() const { return file_ == "-" ? "standard input" : file_; }

 private:
  bool Fill();
  void Fail(const std::string& why);

  const std::string file_;
  const char separator_;
  const std::function<bool()> stopped_;
  const std::string item_;
  int descriptor_;
  bool ended_ = false;
  std::string read_;  // what was read and not handed out, from `begin_` on
  std::size_t begin_ = 0;
  std::string fault_;
};

}  // namespace quillmark::tool

#endif
