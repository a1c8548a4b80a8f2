// A FOND through both checksums of its kerning table. No table of any size may take long.
#include <algorithm>
#include <cstdint>
#include <initializer_list>

#include "analysis/face_checksums.h"
#include "platform/byte_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Handle fond = NewHandle(static_cast<Size>(size));
  std::ranges::copy(quillmark::Bytes(data, size), *fond);
  for (const auto style : std::initializer_list<std::int16_t>{0, 1, -1}) {
    quillmark::GetKestineChecksum(fond, style);
    std::uint32_t file_checksum = 0;
    quillmark::GetOmbreluxChecksum("", nullptr, fond, style, true, file_checksum);
  }
  DisposeHandle(fond);
  return 0;
}
