// Decompresses the beginning of a gzip file, since bitmap fonts are mostly distributed compressed.
#ifndef QUILLMARK_TOOL_REASONS_GZIP_START_H_
#define QUILLMARK_TOOL_REASONS_GZIP_START_H_

#include <cstdint>
#include <vector>

#include "platform/byte_reader.h"

namespace quillmark::tool {

// At most kFileStartSize bytes; none when `start`, the beginning of the file, is no gzip data.
std::vector<std::uint8_t> ReadGzipStart(Bytes start);

}  // namespace quillmark::tool

#endif
