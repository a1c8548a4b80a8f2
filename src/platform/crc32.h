// CRC-32 (ISO 3309, ITU-T V.42) over bytes, and the combination of the CRCs of neighbouring blocks. Tests:
// tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_PLATFORM_CRC32_H_
#define QUILLMARK_PLATFORM_CRC32_H_

#include <cstddef>
#include <cstdint>

#include "platform/byte_reader.h"

namespace quillmark {

// Continues `crc` over the bytes; 0 starts.
std::uint32_t Crc32(std::uint32_t crc, Bytes data);

// The CRC of two blocks one after the other, from those of each. Most of the work goes into the operator,
// which depends on the length of the second block alone.
struct CrcOperator {
  std::uint32_t value;
};
CrcOperator CrcOperatorFor(std::size_t second_length);
std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, CrcOperator second_length);

// The CRC and length of some bytes: enough to continue any running CRC over them without reading them again.
struct SummedBytes {
  std::uint32_t crc = 0;  // from 0
  std::size_t length = 0;

  void Add(Bytes bytes) {
    crc = Crc32(crc, bytes);
    length += bytes.size();
  }
  std::uint32_t Continue(std::uint32_t running) const {
    return CombineCrc32(running, crc, CrcOperatorFor(length));
  }
};

}  // namespace quillmark

#endif
