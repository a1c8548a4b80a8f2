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

CrcOperator CrcOperatorFor(std::size_t second_length) {
  return {static_cast<std::uint32_t>(crc32_combine_gen(static_cast<z_off_t>(second_length)))};
}

std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, CrcOperator second_length) {
  return static_cast<std::uint32_t>(crc32_combine_op(first, second, second_length.value));
}

}  // namespace quillmark
