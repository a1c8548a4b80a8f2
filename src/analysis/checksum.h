// CRC-32 (ISO 3309, ITU-T V.42) over bytes and over both forks of a file.
// Tests: tests/analysis/checksum_test.cc.
#ifndef QUILLMARK_ANALYSIS_CHECKSUM_H_
#define QUILLMARK_ANALYSIS_CHECKSUM_H_

#include <cstdint>
#include <memory>
#include <string>

#include "platform/byte_reader.h"

namespace quillmark {

struct ChecksumMemory;

class CChecksum {
 public:
  // Continues `crc` over the bytes; 0 starts. Continuing over several blocks gives the CRC of their
  // concatenation.
  static std::uint32_t icrc(Bytes data, std::uint32_t crc);

  // The CRC of the data fork followed by the resource fork, both whole; the data fork's alone goes to
  // `data_fork_checksum` (may be null): 0 for a fork that is empty or cannot be opened. True when the
  // resource fork could be opened, or else when the CRC differs from what `checksum` held on entry. A null
  // `checksum` gives true at once. The forks pass through one block that belongs to the thread.
  static bool CalculateFileChecksum(const std::string& path, std::uint32_t* checksum,
                                    std::uint32_t* data_fork_checksum);
};

// `start` plus the big-endian words of the data, 32-bit and wrapping; bytes that the last word lacks count as
// zero.
std::uint32_t ChecksumLongAlignedData(std::uint32_t start, Bytes data);

// While one of these lives on a thread, what several faces share is summed once on it: whole files by their
// paths, printer fonts and resources. They may nest; the outermost one forgets.
class ChecksumScope {
 public:
  ChecksumScope();
  ~ChecksumScope();
  ChecksumScope(const ChecksumScope&) = delete;
  ChecksumScope& operator=(const ChecksumScope&) = delete;

 private:
  std::unique_ptr<ChecksumMemory> memory_;  // of the outermost one
};

}  // namespace quillmark

#endif
