#include "reasons/gzip_start.h"

#include <zlib.h>

#include "reasons/known_formats.h"

namespace quillmark::tool {

std::vector<std::uint8_t> ReadGzipStart(Bytes start) {
  constexpr int kGzipOnly = 16 + MAX_WBITS;
  z_stream stream{};
  if (::inflateInit2(&stream, kGzipOnly) != Z_OK) return {};
  std::vector<std::uint8_t> compressed(start.begin(), start.end());  // zlib's input is not const
  std::vector<std::uint8_t> plain(kFileStartSize);
  stream.next_in = compressed.data();
  stream.avail_in = static_cast<uInt>(compressed.size());
  stream.next_out = plain.data();
  stream.avail_out = static_cast<uInt>(plain.size());
  // Whatever it returns, the bytes decompressed so far are the beginning of the file.
  static_cast<void>(::inflate(&stream, Z_SYNC_FLUSH));
  plain.erase(plain.end() - stream.avail_out, plain.end());
  ::inflateEnd(&stream);
  return plain;
}

}  // namespace quillmark::tool
