#include "analysis/checksum.h"

#include "platform/crc32.h"

namespace quillmark {

std::uint32_t CChecksum::icrc(Bytes data, std::uint32_t crc) { return Crc32(crc, data); }

bool CChecksum::CalculateFileChecksum(FontFile& file, std::uint32_t* checksum,
                                      std::uint32_t* data_fork_checksum) {
  if (checksum == nullptr) return true;
  const ForkSums& sums = file.Sums();
  const std::uint32_t on_entry = *checksum;
  *checksum = sums.both_forks;
  if (data_fork_checksum != nullptr) *data_fork_checksum = sums.data_fork;
  // Without a resource fork a file counts as read unless its CRC happens to be what the caller passed in.
  return sums.has_resource_fork || *checksum != on_entry;
}

std::uint32_t ChecksumLongAlignedData(std::uint32_t start, Bytes data) {
  return start + SumBigEndianWords(data);
}

}  // namespace quillmark
