// Names of the files that the faces of one font file are written to. Tests: tests/cli/split_test.py.
#ifndef QUILLMARK_TOOL_SPLIT_SPLIT_NAMES_H_
#define QUILLMARK_TOOL_SPLIT_SPLIT_NAMES_H_

#include <map>
#include <set>
#include <string>

namespace quillmark::tool {

class SplitNames {
 public:
  // A file name that no earlier call gave, not even in another case: the PostScript name made safe, "-2",
  // "-3" and so on when it is taken, and the extension. `fallback` serves for a face without a name.
  std::string NameFor(const std::string& post_script_name, const std::string& fallback,
                      const std::string& extension);

 private:
  std::set<std::string> taken_;              // in lower case, without extensions
  std::map<std::string, int> next_numbers_;  // of a stem in lower case: all below it are taken
};

}  // namespace quillmark::tool

#endif
