// Turns a Type 1 font program into the POST resources of a Macintosh printer font file (LWFN): 2 bytes of
// type and at most 2046 of data each, numbered from 501. Source: Adobe technical note 5040, "Supporting
// Downloadable PostScript Language Fonts".
//   TempFolder folder;  ResourceForkBuilder fork;
//   AddPostResources(fork, PostSegments(ReadFile("NimbusSans-Regular.t1")));
//   folder.Write("NimbuSanReg", fork.Build());
#ifndef QUILLMARK_TESTS_BUILDERS_TYPE1_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_TYPE1_BUILDER_H_

#include <string>
#include <string_view>
#include <vector>

#include "builders/resource_fork_builder.h"

namespace quillmark {

// The segments of a program (clear text, binary eexec part, zeros and cleartomark), and the end mark.
std::vector<std::string> PostSegments(std::string_view type1_program);
// Adds them as POST 501, 502, ...
void AddPostResources(ResourceForkBuilder& fork, const std::vector<std::string>& segments);

}  // namespace quillmark

#endif
