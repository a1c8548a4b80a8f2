// What the checksums of one file's faces have in common, remembered while a ChecksumScope lives: each fork,
// printer font file and resource is then read and summed once, however many styles name it.
#ifndef QUILLMARK_ANALYSIS_CHECKSUM_MEMORY_H_
#define QUILLMARK_ANALYSIS_CHECKSUM_MEMORY_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "analysis/crc32.h"
#include "platform/byte_reader.h"
#include "platform/resource_manager.h"

namespace quillmark {

struct ForkChecksums {
  std::uint32_t data_fork = 0;
  std::uint32_t both_forks = 0;
  bool resource_fork_opened = false;
};

// Bytes as a CRC meets them: enough to continue any running CRC over them without reading them again.
struct SummedBytes {
  std::uint32_t crc = 0;  // from 0
  std::size_t length = 0;

  void Add(Bytes bytes) {
    crc = Crc32(crc, bytes);
    length += bytes.size();
  }
  std::uint32_t Continue(std::uint32_t running) const { return CombineCrc32(running, crc, length); }
};

struct ChecksumMemory {
  using ResourceName = std::pair<ResType, ResID>;

  std::map<std::string, ForkChecksums> files;                            // by path
  std::map<std::string, std::optional<SummedBytes>> printer_fonts;       // by path; none without a map
  std::map<std::string, std::map<ResourceName, SummedBytes>> resources;  // by path of the resource file

  // That of the thread's outermost scope; null outside of any.
  static ChecksumMemory* Current();
};

// What `make` gives, made once a key and kept in `known`; made anew each time when `known` is null.
template <typename Map, typename Make>
typename Map::mapped_type Remember(Map* known, const typename Map::key_type& key, Make make) {
  if (known == nullptr) return make();
  const auto found = known->find(key);
  if (found != known->end()) return found->second;
  return known->emplace(key, make()).first->second;
}

}  // namespace quillmark

#endif
