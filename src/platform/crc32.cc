#include "platform/crc32.h"

#include <zlib.h>
#ifdef QM_HAVE_LIBDEFLATE
#include <libdeflate.h>
#endif

namespace quillmark {

std::uint32_t Crc32(std::uint32_t crc, Bytes data) {
  if (data.empty()) return crc;  // both libraries start anew when they get a null pointer
#ifdef QM_HAVE_LIBDEFLATE
  return libdeflate_crc32(crc, data.data(), data.size());
#else
  return static_cast<std::uint32_t>(crc32_z(crc, data.data(), data.size()));
#endif
}

std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::size_t second_length) {
  return static_cast<std::uint32_t>(crc32_combine(first, second, static_cast<z_off_t>(second_length)));
}

CrcOperator CrcOperatorFor(std::size_t second_length) {
  return {static_cast<std::uint32_t>(crc32_combine_gen(static_cast<z_off_t>(second_length)))};
}

std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, CrcOperator second_length) {
  return static_cast<std::uint32_t>(crc32_combine_op(first, second, second_length.value));
}

// With A and B the CRCs of the file up to the first and to the last block, the CRC of what lies between is
// CombineCrc32(A, B, length): the operation is linear, so that A cancels itself out of B. For the same reason
// a running CRC continues over it with one combination.
std::uint32_t BlockCrcs::Continue(std::uint32_t crc, std::size_t first, std::size_t last) const {
  return CombineCrc32(crc ^ crcs_[first], crcs_[last], (last - first) * kBlockSize);
}

}  // namespace quillmark
