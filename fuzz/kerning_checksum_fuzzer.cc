// A FOND through both checksums of its kerning table. No table of any size may take long.
#include <cstdint>
#include <initializer_list>

#include "platform/byte_reader.h"
#include "resources/fond_kerning.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const quillmark::FondKerning kerning(quillmark::Bytes(data, size));
  for (const auto style : std::initializer_list<std::int16_t>{0, 1, -1}) {
    kerning.SumOfBytes(style);
    kerning.CrcOfPairs(style);
  }
  return 0;
}
