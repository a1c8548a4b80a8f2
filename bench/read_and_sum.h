// The limit that identifying files is measured against: open a file, read it in blocks of 64 KiB, and run a
// CRC-32 over them. Identification computes that checksum too, so it cannot be faster.
#ifndef QUILLMARK_BENCH_READ_AND_SUM_H_
#define QUILLMARK_BENCH_READ_AND_SUM_H_

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>
#ifdef QM_HAVE_LIBDEFLATE
#include <libdeflate.h>
#endif

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace quillmark::bench {

using Crc = std::uint32_t (*)(std::uint32_t crc, const unsigned char* bytes, std::size_t count);

inline std::uint32_t ZlibCrc(std::uint32_t crc, const unsigned char* bytes, std::size_t count) {
  return static_cast<std::uint32_t>(::crc32_z(crc, bytes, count));
}

// The faster one where the build has it, as the library itself takes it.
inline std::uint32_t BestCrc(std::uint32_t crc, const unsigned char* bytes, std::size_t count) {
#ifdef QM_HAVE_LIBDEFLATE
  return ::libdeflate_crc32(crc, bytes, count);
#else
  return ZlibCrc(crc, bytes, count);
#endif
}

// The sum of an open file's bytes; closes it.
inline std::uint32_t SumAndClose(int file, Crc crc_of) {
  thread_local std::array<unsigned char, 65536> block;
  std::uint32_t crc = 0;
  for (ssize_t count; (count = ::read(file, block.data(), block.size())) > 0;) {
    crc = crc_of(crc, block.data(), static_cast<std::size_t>(count));
  }
  ::close(file);
  return crc;
}

inline std::uint32_t ReadAndSum(const std::string& path, Crc crc_of) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  return file < 0 ? 0 : SumAndClose(file, crc_of);
}

}  // namespace quillmark::bench

#endif
