// The bytes of one stand-alone sfnt font: in memory, or in a file of which only the ranges asked for are
// read. Offsets and lengths are in bytes from the start of the font; nothing outside [0, size) is ever handed
// out. Tests: tests/analysis/sfnt_data_test.cc.
#ifndef QUILLMARK_ANALYSIS_SFNT_DATA_H_
#define QUILLMARK_ANALYSIS_SFNT_DATA_H_

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/forks.h"

namespace quillmark {

class SfntData {
 public:
  // A view: the bytes must outlive the object.
  explicit SfntData(Bytes font);
  // The first `size` bytes of the file. What cannot be read is zero.
  SfntData(RegularFile file, std::uint32_t size);
  SfntData(SfntData&&) = default;
  SfntData& operator=(SfntData&&) = default;

  std::uint32_t size() const { return size_; }

  // The bytes [offset, offset + length), or nothing when they do not all lie inside the font. The span lives
  // as long as this object: each range of a file is read once and kept.
  std::optional<Bytes> Range(std::uint32_t offset, std::uint32_t length) const;

  // Calls `visit` with [offset, offset + length) in consecutive blocks that are multiples of 4 bytes but for
  // the last, keeping none of them. False, without a call, when the range does not lie inside the font.
  template <typename Visit>
  bool ForEachBlock(std::uint32_t offset, std::uint32_t length, Visit visit) const;

 private:
  std::optional<Bytes> ReadBlock(std::uint64_t offset, std::uint32_t length,
                                 std::vector<std::uint8_t>& buffer) const;

  Bytes memory_;
  std::optional<RegularFile> file_;
  std::uint32_t size_ = 0;
  mutable std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint8_t>> ranges_;
};

}  // namespace quillmark

#endif
