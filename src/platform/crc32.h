// CRC-32 (ISO 3309, ITU-T V.42) over bytes, and the combination of the CRCs of neighbouring blocks. Tests:
// tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_PLATFORM_CRC32_H_
#define QUILLMARK_PLATFORM_CRC32_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/byte_reader.h"

namespace quillmark {

// Continues `crc` over the bytes; 0 starts.
std::uint32_t Crc32(std::uint32_t crc, Bytes data);

// The CRC of two blocks one after the other, from those of each.
std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::size_t second_length);

// The same for many second blocks of one length: most of the work goes into the operator, which depends on
// that length alone.
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
  std::uint32_t Continue(std::uint32_t running) const { return CombineCrc32(running, crc, length); }
};

// The CRCs of the first 0, 1, 2, ... blocks of a file that is read once. They continue a running CRC over any
// range of whole blocks with one combination.
class BlockCrcs {
 public:
  static constexpr std::size_t kBlockSize = 1024;  // bytes

  // The next block of the file.
  void Add(Bytes block) { crcs_.push_back(Crc32(crcs_.back(), block)); }
  // Continues `crc` over the blocks [first, last), which were added.
  std::uint32_t Continue(std::uint32_t crc, std::size_t first, std::size_t last) const;

 private:
  std::vector<std::uint32_t> crcs_ = {0};
};

}  // namespace quillmark

#endif
