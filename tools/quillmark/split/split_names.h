// Names of the files that the faces of one font file are written to. Tests: tests/cli/split_test.py.
#ifndef QUILLMARK_TOOL_SPLIT_SPLIT_NAMES_H_
#define QUILLMARK_TOOL_SPLIT_SPLIT_NAMES_H_

#include <map>
#include <string>

namespace quillmark::tool {

class SplitNames {
 public:
  // A file name that no earlier call gave, not even in another case: the PostScript name made safe, "-2",
  // "-3" and so on when it is taken, and the extension. `fallback` serves for a face without a name.
  std::string NameFor(const std::string& post_script_name, const std::string& fallback,
                      const std::string& extension);

 private:
  // Of every name that was given, in lower case and without its extension: the number to try next when it is
  // wanted again.
  std::map<std::string, int> next_numbers_;
};

}  // namespace quillmark::tool

#endif
