// CRC-32 (ISO 3309, ITU-T V.42) over bytes and over both forks of a file.
// Tests: tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_CHECKSUM_H_
#define QUILLMARK_ANALYSIS_CHECKSUM_H_

#include <cstdint>

#include "platform/byte_reader.h"
#include "platform/files/font_file.h"
#include "quillmark/quillmark.h"

namespace quillmark {

// The attributes for which the bytes of a font are summed.
inline constexpr std::uint32_t kDataChecksums = QM_ATTRIBUTE_CHECKSUM | QM_ATTRIBUTE_LEGACY_CHECKSUM;

class CChecksum {
 public:
  // Continues `crc` over the bytes; 0 starts. Continuing over several blocks gives the CRC of their
  // concatenation.
  static std::uint32_t icrc(Bytes data, std::uint32_t crc);

  // The CRC of the data fork followed by the resource fork, both whole; the data fork's alone goes to
  // `data_fork_checksum` (may be null): 0 for a fork that is empty or cannot be opened. True when the
  // resource fork could be opened, or else when the CRC differs from what `checksum` held on entry. A null
  // `checksum` gives true at once.
  static bool CalculateFileChecksum(FontFile& file, std::uint32_t* checksum,
                                    std::uint32_t* data_fork_checksum);
};

// `start` plus the big-endian words of the data, 32-bit and wrapping; bytes that the last word lacks count as
// zero.
std::uint32_t ChecksumLongAlignedData(std::uint32_t start, Bytes data);

}  // namespace quillmark

#endif
