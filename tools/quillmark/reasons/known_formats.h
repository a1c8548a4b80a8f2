// The kinds of file that people take for fonts and that give no face, recognised by their first bytes: fonts
// that Quillmark does not read, and files that are no fonts at all. Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_REASONS_KNOWN_FORMATS_H_
#define QUILLMARK_TOOL_REASONS_KNOWN_FORMATS_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/byte_reader.h"

namespace quillmark::tool {

// The first bytes of a file, and the length of the whole file.
inline constexpr std::size_t kFileStartSize = 4096;
struct FileStart {
  Bytes bytes;
  std::uint64_t size = 0;
};

enum class FormatUse {
  kFont,         // a font, or a part of one, in a format that is not read
  kPrinterFont,  // outlines that are read through the font family file that names them
  kNoFont,
};

struct KnownFormat {
  FormatUse use;
  std::string name;         // with its article
  std::string_view advice;  // what to do; may be empty
};

// Nothing when the file is of none of these formats. A font compressed with gzip, as bitmap fonts mostly are,
// is recognised as such.
std::optional<KnownFormat> RecogniseFormat(const FileStart& file);

// "a TrueType font" and the like when the bytes begin as an sfnt font does.
std::optional<std::string_view> SfntKind(Bytes start);

}  // namespace quillmark::tool

#endif
