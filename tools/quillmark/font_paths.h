// The files that a command's paths stand for: named ones as they are, folders walked to the bottom in a
// stable order.
#ifndef QUILLMARK_TOOL_FONT_PATHS_H_
#define QUILLMARK_TOOL_FONT_PATHS_H_

#include <string>
#include <vector>

namespace quillmark::tool {

struct FontPath {
  std::string path;
  bool named = false;  // given on the command line, not found in a folder
};

// Folders are listed by the bytes of their names. Linked folders are not entered, so that no walk is endless;
// the folders that hold other files' resource forks (__MACOSX, .AppleDouble, resource.frk) are not entered
// either. A named path comes back even when nothing is there.
std::vector<FontPath> ExpandPaths(const std::vector<std::string>& paths);

}  // namespace quillmark::tool

#endif
