#include "analysis/checksum.h"

#include <memory>

#include "analysis/checksum_memory.h"
#include "analysis/crc32.h"
#include "platform/forks.h"

namespace quillmark {
namespace {

thread_local ChecksumMemory* current_memory = nullptr;

// Continues `crc` over a whole fork. Bytes that cannot be read count as zero.
std::uint32_t AddFork(const Fork& fork, std::uint32_t crc) {
  for (std::uint64_t offset = 0; offset < fork.length();) {
    const Bytes block = fork.BlockAt(offset);
    crc = CChecksum::icrc(block, crc);
    offset += block.size();
  }
  return crc;
}

ForkChecksums ComputeForkChecksums(const std::string& path) {
  ForkChecksums checksums;
  if (const auto data_fork = OpenDataFork(path)) checksums.data_fork = AddFork(*data_fork, 0);
  checksums.both_forks = checksums.data_fork;
  if (const auto resource_fork = OpenResourceFork(path)) {
    checksums.both_forks = AddFork(*resource_fork, checksums.both_forks);
    checksums.resource_fork_opened = true;
  }
  return checksums;
}

ForkChecksums ChecksumsOf(const std::string& path) {
  ChecksumMemory* const memory = ChecksumMemory::Current();
  return Remember(memory ? &memory->files : nullptr, path, [&path] { return ComputeForkChecksums(path); });
}

}  // namespace

std::uint32_t CChecksum::icrc(Bytes data, std::uint32_t crc) { return Crc32(crc, data); }

bool CChecksum::CalculateFileChecksum(const std::string& path, std::uint32_t* checksum,
                                      std::uint32_t* data_fork_checksum) {
  if (checksum == nullptr) return true;
  const ForkChecksums found = ChecksumsOf(path);
  const std::uint32_t on_entry = *checksum;
  *checksum = found.both_forks;
  if (data_fork_checksum != nullptr) *data_fork_checksum = found.data_fork;
  // Without a resource fork a file counts as read unless its CRC happens to be what the caller passed in.
  return found.resource_fork_opened || *checksum != on_entry;
}

std::uint32_t ChecksumLongAlignedData(std::uint32_t start, Bytes data) {
  return start + SumBigEndianWords(data);
}

ChecksumMemory* ChecksumMemory::Current() { return current_memory; }

ChecksumScope::ChecksumScope() {
  if (current_memory != nullptr) return;
  memory_ = std::make_unique<ChecksumMemory>();
  current_memory = memory_.get();
}

ChecksumScope::~ChecksumScope() {
  if (memory_) current_memory = nullptr;
}

}  // namespace quillmark
