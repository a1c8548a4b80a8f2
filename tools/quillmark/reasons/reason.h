// Why a file gave no face, or fewer than it lists: of what kind the fault is, and a sentence that a person
// can act on. A reason names what kept the library from reading a face. Reads only the first bytes and the
// tables, except of collections. Tests: tests/cli/why_test.py, tests/cli/losses_test.py.
#ifndef QUILLMARK_TOOL_REASONS_REASON_H_
#define QUILLMARK_TOOL_REASONS_REASON_H_

#include <cstddef>
#include <optional>
#include <string>

#include "api/creation.h"
#include "reasons/outcome.h"

namespace quillmark::tool {

class PrinterFontFamilies;

// The reason of a file that spends its budget, most of it on `work`.
std::string TooMuchWork(Work work);

// What became of `path`, for which creation gave `result` in the file system `files`. `families` caches the
// printer fonts of its folders for many files.
Explanation Explain(const FileSystem& files, const std::string& path, const CreationResult& result,
                    PrinterFontFamilies& families);

// The explanation as printed after the path: "gives 3 of the 4 faces it lists; face 3: ...".
std::string Told(std::size_t faces, const Explanation& explanation);

// Why `path` is no regular file that can be read; nothing when it is one.
std::optional<std::string> WhyNotReadable(const std::string& path);

}  // namespace quillmark::tool

#endif
