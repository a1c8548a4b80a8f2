// Sentences about files that lost their resource fork, or carry that of another file. Tests:
// tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASONS_FORK_PLACES_H_
#define QUILLMARK_TOOL_REASONS_FORK_PLACES_H_

#include <filesystem>
#include <optional>
#include <string>

#include "reasons/opened_font.h"
#include "reasons/outcome.h"

namespace quillmark::tool {

// For a file with an empty data fork and no resource fork: where the resource fork was looked for.
std::string NoForkAnywhere(const std::string& path);

// For an AppleDouble file: which file's resource fork it carries; nothing for any other file.
std::optional<std::string> WhySidecar(OpenedFont& font);

// The file that a sidecar's own path says it belongs to: without "._", outside .AppleDouble and __MACOSX.
std::filesystem::path OwnerOfSidecar(const std::filesystem::path& sidecar);

// Of a sidecar whose file is not there. Nothing is told of one that holds no font, nor of what is no sidecar
// but for its name.
Explanation ExplainLoneSidecar(OpenedFont& font);

}  // namespace quillmark::tool

#endif
