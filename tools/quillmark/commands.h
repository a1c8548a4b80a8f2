// The tool's commands. Each writes its result to standard output and what went wrong to standard error, a
// line a fault, and returns the exit status: 0 all asked for was given, 1 something was not. Wrong usage (2)
// is main's.
#ifndef QUILLMARK_TOOL_COMMANDS_H_
#define QUILLMARK_TOOL_COMMANDS_H_

#include <string>
#include <vector>

namespace quillmark::tool {

struct IdentifyOptions {
  std::string format = "table";
  unsigned threads = 1;
  std::vector<std::string> paths;
};
int Identify(const IdentifyOptions& options);

// Builds an array from stored XML or a property list and writes it in `format`.
int Read(const std::string& file, const std::string& format);

int Styles(const std::string& name, const std::string& second);
int Classify(const std::string& family, const std::string& alternate);

// Prints the resource map of a font file: types, resources, and what each FOND says.
int Resources(const std::string& file);

}  // namespace quillmark::tool

#endif
