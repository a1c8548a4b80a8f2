// What the checksums of one file's faces have in common, remembered while a FileChecksumScope lives, so that
// a file of thousands of styles costs no more than its bytes and its faces.
#ifndef QUILLMARK_ANALYSIS_CHECKSUM_MEMORY_H_
#define QUILLMARK_ANALYSIS_CHECKSUM_MEMORY_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "analysis/fond_kerning.h"

namespace quillmark {

struct ForkChecksums {
  std::uint32_t data_fork = 0;
  std::uint32_t both_forks = 0;
  bool resource_fork_opened = false;
};

struct ChecksumMemory {
  std::map<std::string, ForkChecksums> files;  // by path
  std::optional<FondKerning> kerning;          // of the FOND that was asked about last

  // That of the thread's outermost scope; null outside of any.
  static ChecksumMemory* Current();
};

}  // namespace quillmark

#endif
